-- The local storefront's database. Books are shared by all stores; what a book costs,
-- and in which currency, is each store's own.
PRAGMA foreign_keys = ON;

CREATE TABLE IF NOT EXISTS stores (
  code TEXT PRIMARY KEY,            -- the path part of the store, such as "de_de"
  name TEXT NOT NULL,
  currency TEXT NOT NULL,           -- three-letter code
  language TEXT NOT NULL,           -- three-letter code of the store's own texts
  position INTEGER NOT NULL
);

CREATE TABLE IF NOT EXISTS genres (
  id INTEGER PRIMARY KEY,
  slug TEXT NOT NULL UNIQUE,
  parent_id INTEGER REFERENCES genres(id),
  name_en TEXT NOT NULL,
  name_de TEXT NOT NULL,
  position INTEGER NOT NULL
);

CREATE TABLE IF NOT EXISTS authors (
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL
);

CREATE TABLE IF NOT EXISTS series (
  id INTEGER PRIMARY KEY,
  title TEXT NOT NULL,
  min_books INTEGER NOT NULL,       -- least number of books bought together for the discount
  discount INTEGER NOT NULL         -- per cent
);

CREATE TABLE IF NOT EXISTS books (
  id INTEGER PRIMARY KEY,
  title TEXT NOT NULL,
  author_id INTEGER NOT NULL REFERENCES authors(id),
  genre_id INTEGER NOT NULL REFERENCES genres(id),
  kind TEXT NOT NULL CHECK (kind IN ('ebook', 'audio')),
  format TEXT NOT NULL,             -- MIME type of the delivered file
  acsm INTEGER NOT NULL DEFAULT 0,  -- delivered as a fulfilment token
  language TEXT NOT NULL,
  publisher TEXT NOT NULL,
  isbn TEXT NOT NULL,
  pages INTEGER NOT NULL,
  published TEXT NOT NULL,          -- "YYYY-MM-DD"
  description TEXT NOT NULL,        -- HTML
  rating REAL NOT NULL,
  popularity INTEGER NOT NULL,
  in_stock INTEGER NOT NULL DEFAULT 1,
  series_id INTEGER REFERENCES series(id),
  series_index INTEGER,
  cover_width INTEGER NOT NULL,
  cover_height INTEGER NOT NULL
);
CREATE INDEX IF NOT EXISTS books_genre ON books(genre_id);
CREATE INDEX IF NOT EXISTS books_series ON books(series_id);

CREATE TABLE IF NOT EXISTS covers (
  book_id INTEGER PRIMARY KEY REFERENCES books(id),
  jpeg BLOB NOT NULL
);

CREATE TABLE IF NOT EXISTS prices (
  store_code TEXT NOT NULL REFERENCES stores(code),
  book_id INTEGER NOT NULL REFERENCES books(id),
  price REAL NOT NULL,              -- 0 for a free book
  old_price REAL NOT NULL DEFAULT 0,
  PRIMARY KEY (store_code, book_id)
);

CREATE TABLE IF NOT EXISTS collections (
  id INTEGER PRIMARY KEY,
  title TEXT NOT NULL,
  description TEXT NOT NULL
);

CREATE TABLE IF NOT EXISTS collection_books (
  collection_id INTEGER NOT NULL REFERENCES collections(id),
  book_id INTEGER NOT NULL REFERENCES books(id),
  position INTEGER NOT NULL,
  PRIMARY KEY (collection_id, book_id)
);

CREATE TABLE IF NOT EXISTS customers (
  id INTEGER PRIMARY KEY,
  email TEXT NOT NULL UNIQUE COLLATE NOCASE,
  password_hash TEXT NOT NULL,      -- "pbkdf2-sha256$<iterations>$<salt hex>$<hash hex>"
  first_name TEXT NOT NULL,
  last_name TEXT NOT NULL
);

CREATE TABLE IF NOT EXISTS tokens (
  token TEXT PRIMARY KEY,
  customer_id INTEGER NOT NULL REFERENCES customers(id),
  kind TEXT NOT NULL CHECK (kind IN ('access', 'refresh')),
  expires_at INTEGER NOT NULL       -- seconds since the epoch
);

CREATE TABLE IF NOT EXISTS purchases (
  customer_id INTEGER NOT NULL REFERENCES customers(id),
  book_id INTEGER NOT NULL REFERENCES books(id),
  store_code TEXT NOT NULL REFERENCES stores(code),
  purchased_at INTEGER NOT NULL,
  -- names the purchase in a fulfilment token, so the book can be fetched without a sign-in
  fulfilment_key TEXT NOT NULL DEFAULT (lower(hex(randomblob(16)))),
  PRIMARY KEY (customer_id, book_id)
);

CREATE TABLE IF NOT EXISTS wishlist (
  customer_id INTEGER NOT NULL REFERENCES customers(id),
  book_id INTEGER NOT NULL REFERENCES books(id),
  added_at INTEGER NOT NULL,
  PRIMARY KEY (customer_id, book_id)
);

-- Grows with every change of the catalogue, so that feeds kept in memory know when they are out
-- of date, whoever made the change.
CREATE TABLE IF NOT EXISTS catalogue_revision (
  revision INTEGER NOT NULL
);
INSERT INTO catalogue_revision(revision) SELECT 0 WHERE NOT EXISTS (SELECT 1 FROM catalogue_revision);
CREATE TRIGGER IF NOT EXISTS stores_insert AFTER INSERT ON stores
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS stores_update AFTER UPDATE ON stores
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS stores_delete AFTER DELETE ON stores
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS genres_insert AFTER INSERT ON genres
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS genres_update AFTER UPDATE ON genres
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS genres_delete AFTER DELETE ON genres
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS authors_insert AFTER INSERT ON authors
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS authors_update AFTER UPDATE ON authors
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS authors_delete AFTER DELETE ON authors
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS series_insert AFTER INSERT ON series
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS series_update AFTER UPDATE ON series
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS series_delete AFTER DELETE ON series
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS books_insert AFTER INSERT ON books
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS books_update AFTER UPDATE ON books
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS books_delete AFTER DELETE ON books
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS covers_insert AFTER INSERT ON covers
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS covers_update AFTER UPDATE ON covers
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS covers_delete AFTER DELETE ON covers
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS prices_insert AFTER INSERT ON prices
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS prices_update AFTER UPDATE ON prices
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS prices_delete AFTER DELETE ON prices
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS collections_insert AFTER INSERT ON collections
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS collections_update AFTER UPDATE ON collections
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS collections_delete AFTER DELETE ON collections
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS collection_books_insert AFTER INSERT ON collection_books
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS collection_books_update AFTER UPDATE ON collection_books
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;
CREATE TRIGGER IF NOT EXISTS collection_books_delete AFTER DELETE ON collection_books
  BEGIN UPDATE catalogue_revision SET revision = revision + 1; END;

-- Accounts, carts, orders and payments behind the REST interface. New tables only, so a data
-- folder from before them opens as it is.
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
