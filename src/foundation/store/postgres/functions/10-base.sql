-- The dialect's functions for PostgreSQL: they answer as those of the rooms text and jet do, errors included. They live
-- in the store's schema; the search path of the caller names it, since a path of their own would keep them from being
-- inlined. Numbers are read and written in the German way whatever the server's locale is.
--
-- Functions that begin with jetx_ are parts of others. A function that can be reached often is one SELECT without
-- STRICT, so that the planner writes it into the statement.

CREATE COLLATION IF NOT EXISTS merivane (provider = icu, locale = 'de-u-ks-level2', deterministic = false);
-- The same letters where texts are searched, which the other does not allow.
CREATE COLLATION IF NOT EXISTS merivane_letters (provider = icu, locale = 'de');

-- A date in the arguments of overloaded functions: days since 30.12.1899. Columns and results are the bare days.
DO $$
BEGIN
  IF to_regtype('jet_date') IS NULL THEN
    CREATE TYPE jet_date AS (days double precision);
  END IF;
  -- A number that a text holds; the bits of "&H.." and "&O.." have no sign yet.
  IF to_regtype('jetx_number') IS NULL THEN
    CREATE TYPE jetx_number AS (value numeric, bits boolean);
  END IF;
END $$;

-- Raises the error of that number. The witness is any argument that the failure depends on: with it the planner cannot
-- run the call before there is a row; it should be made of all arguments of the function. Null goes through.
CREATE OR REPLACE FUNCTION jet_fail(number integer, witness anyelement) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  RAISE EXCEPTION USING
    ERRCODE = 'J' || lpad(number::text, 4, '0'),
    MESSAGE = CASE number
      WHEN 5 THEN 'Ungültiger Prozeduraufruf oder ungültiges Argument'
      WHEN 6 THEN 'Überlauf'
      WHEN 11 THEN 'Division durch Null'
      WHEN 13 THEN 'Typen unverträglich'
      WHEN 14 THEN 'Nicht genügend Zeichenfolgenspeicher'
      WHEN 94 THEN 'Unzulässige Verwendung von Null'
      WHEN 3464 THEN 'Datentypenkonflikt in Kriterienausdruck.'
    END;
END $$;

-- A pattern of LIKE that is none.
CREATE OR REPLACE FUNCTION jetx_bad_pattern(why text) RETURNS text
LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $$
BEGIN
  RAISE EXCEPTION USING ERRCODE = 'J0093', MESSAGE = 'Ungültige Musterzeichenfolge: ' || why;
END $$;

-- Division of whole numbers downwards; b is above 0.
CREATE OR REPLACE FUNCTION jetx_floor(a bigint, b bigint) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT a / b - CASE WHEN a % b < 0 THEN 1 ELSE 0 END
$$;
