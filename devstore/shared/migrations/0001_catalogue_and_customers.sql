-- The catalogue, shared by all stores (what a book costs, and in which currency, is each
-- store's own), and the customers with their tokens, purchases and wishes.

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
