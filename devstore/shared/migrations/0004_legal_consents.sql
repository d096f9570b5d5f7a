-- The consent the legal service was told of, one row per report, as the device sent it.
CREATE TABLE IF NOT EXISTS legal_consents (
  id INTEGER PRIMARY KEY,
  endpoint TEXT NOT NULL,
  document TEXT NOT NULL,
  language TEXT NOT NULL,
  version TEXT NOT NULL,
  agree INTEGER NOT NULL,
  agreed_date TEXT NOT NULL,
  service_type TEXT NOT NULL,
  user_id TEXT NOT NULL,
  session_id TEXT NOT NULL,
  device_id TEXT NOT NULL,
  received_at INTEGER NOT NULL
);
