-- The account service's tokens for the device's services, each tied to a customer: the store
-- account's own ("sac") and those of the side services.
CREATE TABLE IF NOT EXISTS service_tokens (
  customer_id INTEGER NOT NULL REFERENCES customers(id),
  service TEXT NOT NULL,
  access_token TEXT NOT NULL UNIQUE,
  refresh_token TEXT NOT NULL UNIQUE,
  issued_at INTEGER NOT NULL,
  PRIMARY KEY (customer_id, service)
);
