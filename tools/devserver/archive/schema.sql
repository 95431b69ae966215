-- The tables of the development archive. All text is UTF-8.

CREATE TABLE channel (
  id          INTEGER PRIMARY KEY,
  name        TEXT NOT NULL UNIQUE COLLATE NOCASE,
  description TEXT NOT NULL
);

CREATE TABLE archive (
  id         INTEGER PRIMARY KEY,
  channel_id INTEGER NOT NULL REFERENCES channel (id),
  name       TEXT NOT NULL COLLATE NOCASE,
  comment    TEXT NOT NULL,
  can_create INTEGER NOT NULL,
  can_edit   INTEGER NOT NULL,
  can_delete INTEGER NOT NULL,
  can_index  INTEGER NOT NULL,
  scans      INTEGER NOT NULL,          -- 1: has scanned pages, so that its hit lists offer a multi-page TIFF
  UNIQUE (channel_id, name)
);

-- A query format searches the columns named in fields (separated by blanks), or all when fields is empty.
CREATE TABLE query_format (
  archive_id INTEGER NOT NULL REFERENCES archive (id),
  position   INTEGER NOT NULL,
  name       TEXT NOT NULL COLLATE NOCASE,
  fields     TEXT NOT NULL,
  PRIMARY KEY (archive_id, position)
);

CREATE TABLE field (
  id     INTEGER PRIMARY KEY,           -- the number that layouts and layout field IDs use
  name   TEXT NOT NULL UNIQUE,          -- the column of document, and the field of a query
  title  TEXT NOT NULL,
  flags  INTEGER NOT NULL               -- 0x400 a date, 0x200 a number
);

CREATE TABLE layout_column (
  layout_id TEXT NOT NULL,
  position  INTEGER NOT NULL,
  field_id  INTEGER NOT NULL REFERENCES field (id),
  PRIMARY KEY (layout_id, position)
);

CREATE TABLE document (
  id         INTEGER PRIMARY KEY,
  archive_id INTEGER NOT NULL REFERENCES archive (id),
  version    INTEGER NOT NULL,
  sort_date  TEXT NOT NULL,             -- yyyy-mm-dd
  title      TEXT NOT NULL,
  author     TEXT NOT NULL,
  customer   TEXT NOT NULL,
  type       TEXT NOT NULL,
  date       TEXT NOT NULL,             -- dd.mm.yyyy
  amount     TEXT NOT NULL,             -- 1234,50, or empty
  text       TEXT NOT NULL
);
CREATE INDEX document_archive ON document (archive_id);

-- The ID of the next document. IDs are never reused, so that an old identifier cannot find another document.
CREATE TABLE next_document (id INTEGER NOT NULL);
CREATE TRIGGER document_number AFTER INSERT ON document BEGIN
  UPDATE next_document SET id = max(id, new.id + 1);
END;

CREATE VIRTUAL TABLE document_text USING fts5 (
  title, author, customer, type, date, amount, text,
  content = 'document', content_rowid = 'id', tokenize = 'unicode61 remove_diacritics 2'
);
CREATE TRIGGER document_text_insert AFTER INSERT ON document BEGIN
  INSERT INTO document_text (rowid, title, author, customer, type, date, amount, text)
  VALUES (new.id, new.title, new.author, new.customer, new.type, new.date, new.amount, new.text);
END;
CREATE TRIGGER document_text_delete AFTER DELETE ON document BEGIN
  INSERT INTO document_text (document_text, rowid, title, author, customer, type, date, amount, text)
  VALUES ('delete', old.id, old.title, old.author, old.customer, old.type, old.date, old.amount, old.text);
END;
CREATE TRIGGER document_text_update AFTER UPDATE ON document BEGIN
  INSERT INTO document_text (document_text, rowid, title, author, customer, type, date, amount, text)
  VALUES ('delete', old.id, old.title, old.author, old.customer, old.type, old.date, old.amount, old.text);
  INSERT INTO document_text (rowid, title, author, customer, type, date, amount, text)
  VALUES (new.id, new.title, new.author, new.customer, new.type, new.date, new.amount, new.text);
END;

-- The row of a document repeats the fields of its newest version, for searches.
CREATE TABLE version (
  document_id INTEGER NOT NULL REFERENCES document (id) ON DELETE CASCADE,
  version     INTEGER NOT NULL,
  title       TEXT NOT NULL,
  created     TEXT NOT NULL,            -- dd.mm.yyyy, the same in all versions
  changed     TEXT NOT NULL,            -- dd.mm.yyyy
  PRIMARY KEY (document_id, version)
) WITHOUT ROWID;

-- Stored files; the versions of a document share unchanged ones.
CREATE TABLE content (
  id         INTEGER PRIMARY KEY,
  byte_count INTEGER NOT NULL
);

-- The bytes of a stored file, in pieces, so that its size takes no memory.
CREATE TABLE content_piece (
  content_id INTEGER NOT NULL REFERENCES content (id) ON DELETE CASCADE,
  position   INTEGER NOT NULL,          -- of its first byte
  bytes      BLOB NOT NULL,
  UNIQUE (content_id, position)
);

CREATE TABLE segment (
  document_id INTEGER NOT NULL,
  version     INTEGER NOT NULL,
  position    INTEGER NOT NULL,         -- from 1, without gaps
  field_id    INTEGER NOT NULL,
  type        INTEGER NOT NULL,         -- 1 text, 2 page image, 3 stored file
  file_name   TEXT NOT NULL,            -- empty for a text
  page_count  INTEGER NOT NULL,         -- of an image
  text        TEXT NOT NULL,            -- lines end with LF
  content_id  INTEGER REFERENCES content (id),  -- NULL for a text, and for a sample page, which is drawn when read
  PRIMARY KEY (document_id, version, position),
  FOREIGN KEY (document_id, version) REFERENCES version ON DELETE CASCADE
);
CREATE INDEX segment_content ON segment (content_id) WHERE content_id IS NOT NULL;

CREATE TABLE note (
  id          INTEGER PRIMARY KEY,
  document_id INTEGER NOT NULL REFERENCES document (id) ON DELETE CASCADE,
  author      TEXT NOT NULL,
  written     TEXT NOT NULL,            -- dd.mm.yyyy hh:mm
  text        TEXT NOT NULL             -- lines end with LF
);
CREATE INDEX note_document ON note (document_id);

CREATE TABLE mask (
  archive_id INTEGER NOT NULL REFERENCES archive (id),
  position   INTEGER NOT NULL,
  name       TEXT NOT NULL,
  PRIMARY KEY (archive_id, position)
);

CREATE TABLE mask_field (
  archive_id INTEGER NOT NULL,
  mask       INTEGER NOT NULL,
  tab_index  INTEGER NOT NULL,
  width      INTEGER NOT NULL,          -- in characters
  align      TEXT NOT NULL,             -- L or R
  name       TEXT NOT NULL,
  mandatory  INTEGER NOT NULL,
  init_text  TEXT NOT NULL,
  list_only  INTEGER NOT NULL,          -- 1: restricted to the values in list
  list       TEXT NOT NULL,             -- values separated by ";"
  PRIMARY KEY (archive_id, mask, tab_index),
  FOREIGN KEY (archive_id, mask) REFERENCES mask
);

-- The page images of an order are those of its document.
CREATE TABLE transport_order (
  number      INTEGER PRIMARY KEY,
  id          TEXT NOT NULL UNIQUE COLLATE NOCASE,
  status      TEXT NOT NULL,            -- open, accepted, loaded, delivered or cancelled
  document_id INTEGER NOT NULL,         -- may have been deleted since
  version     INTEGER NOT NULL,
  customer    TEXT NOT NULL,
  origin      TEXT NOT NULL,
  destination TEXT NOT NULL,
  date        TEXT NOT NULL,            -- of the pick-up, dd.mm.yyyy
  weight      TEXT NOT NULL             -- in tonnes, 12,5
);

CREATE VIRTUAL TABLE transport_order_text USING fts5 (
  id, status, customer, origin, destination, date, weight,
  content = 'transport_order', content_rowid = 'number', tokenize = 'unicode61 remove_diacritics 2'
);
CREATE TRIGGER transport_order_text_insert AFTER INSERT ON transport_order BEGIN
  INSERT INTO transport_order_text (rowid, id, status, customer, origin, destination, date, weight)
  VALUES (new.number, new.id, new.status, new.customer, new.origin, new.destination, new.date, new.weight);
END;
CREATE TRIGGER transport_order_text_update AFTER UPDATE ON transport_order BEGIN
  INSERT INTO transport_order_text (transport_order_text, rowid, id, status, customer, origin, destination, date,
    weight)
  VALUES ('delete', old.number, old.id, old.status, old.customer, old.origin, old.destination, old.date, old.weight);
  INSERT INTO transport_order_text (rowid, id, status, customer, origin, destination, date, weight)
  VALUES (new.number, new.id, new.status, new.customer, new.origin, new.destination, new.date, new.weight);
END;
