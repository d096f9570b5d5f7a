-- Accounts, carts, orders and payments behind the REST interface.
CREATE TABLE IF NOT EXISTS newsletter (
  customer_id INTEGER PRIMARY KEY REFERENCES customers(id),
  marketing INTEGER NOT NULL,       -- 1 when the customer wants the newsletter
  changed_at INTEGER NOT NULL
);

-- Wrong passwords, counted to lock an account for a while.
CREATE TABLE IF NOT EXISTS login_failures (
  customer_id INTEGER NOT NULL REFERENCES customers(id),
  failed_at INTEGER NOT NULL
);
CREATE INDEX IF NOT EXISTS login_failures_customer ON login_failures(customer_id);

-- A cart. Each customer has at most one active quote per store; placing an order closes it.
CREATE TABLE IF NOT EXISTS quotes (
  id INTEGER PRIMARY KEY,
  customer_id INTEGER NOT NULL REFERENCES customers(id),
  store_code TEXT NOT NULL REFERENCES stores(code),
  active INTEGER NOT NULL DEFAULT 1,
  created_at INTEGER NOT NULL
);

CREATE TABLE IF NOT EXISTS quote_items (
  quote_id INTEGER NOT NULL REFERENCES quotes(id),
  book_id INTEGER NOT NULL REFERENCES books(id),
  PRIMARY KEY (quote_id, book_id)
);

CREATE TABLE IF NOT EXISTS payment_methods (
  code TEXT PRIMARY KEY,
  title_en TEXT NOT NULL,
  title_de TEXT NOT NULL,
  -- "free": no payment; "gateway": card form posted to the gateway; "browser": a payment page
  road TEXT NOT NULL CHECK (road IN ('free', 'gateway', 'browser')),
  position INTEGER NOT NULL
);
INSERT OR IGNORE INTO payment_methods(code, title_en, title_de, road, position) VALUES
  ('free', 'Free', 'Kostenlos', 'free', 0),
  ('payonlinepaymentmethod', 'Card (PayOnline)', 'Karte (PayOnline)', 'gateway', 1),
  ('hgwcc', 'Credit card', 'Kreditkarte', 'browser', 2),
  ('hgwsue', 'Online bank transfer', 'Sofortüberweisung', 'browser', 3),
  ('paypal', 'PayPal', 'PayPal', 'browser', 4);

CREATE TABLE IF NOT EXISTS orders (
  id INTEGER PRIMARY KEY,
  customer_id INTEGER NOT NULL REFERENCES customers(id),
  quote_id INTEGER NOT NULL UNIQUE REFERENCES quotes(id),
  store_code TEXT NOT NULL REFERENCES stores(code),
  method TEXT NOT NULL REFERENCES payment_methods(code),
  status TEXT NOT NULL CHECK (status IN ('pending', 'complete', 'cancel')),
  total REAL NOT NULL,
  currency TEXT NOT NULL,
  billing TEXT NOT NULL DEFAULT '{}',   -- the billing address as the client sent it, JSON
  agreement_ids TEXT NOT NULL DEFAULT '',
  source TEXT NOT NULL DEFAULT '',      -- the device that placed it, such as "e-ink 740-2"
  -- names the order in a gateway link, so the gateway's post needs no sign-in
  payment_key TEXT NOT NULL DEFAULT (lower(hex(randomblob(16)))),
  created_at INTEGER NOT NULL,
  updated_at INTEGER NOT NULL
);

CREATE TABLE IF NOT EXISTS order_items (
  order_id INTEGER NOT NULL REFERENCES orders(id),
  book_id INTEGER NOT NULL REFERENCES books(id),
  price REAL NOT NULL,
  PRIMARY KEY (order_id, book_id)
);

-- Cards kept by the two card gateways for paying again without typing the number.
CREATE TABLE IF NOT EXISTS cards (
  id INTEGER PRIMARY KEY,
  customer_id INTEGER NOT NULL REFERENCES customers(id),
  gateway TEXT NOT NULL CHECK (gateway IN ('hgwcc', 'payonline')),
  number TEXT NOT NULL,             -- masked: the first six and the last four digits
  brand TEXT NOT NULL,
  last_used_at INTEGER NOT NULL
);
