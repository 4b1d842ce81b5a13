-- Texts are searched and cut by character. The store's collation can be used neither for searching nor for patterns, so
-- these work on the characters themselves.

-- One character for one, so "ß" stays; what the server would lengthen is left alone.
CREATE OR REPLACE FUNCTION jetx_caseeach(t text, wanted text) RETURNS text
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT coalesce(string_agg(CASE WHEN length(other) = 1 THEN other ELSE one END, '' ORDER BY place), '')
  FROM (SELECT one, place, CASE WHEN wanted = 'upper' COLLATE "C" THEN upper(one COLLATE merivane)
                                ELSE lower(one COLLATE merivane) END AS other
        FROM unnest(string_to_array(t, NULL)) WITH ORDINALITY AS u(one, place)) AS each
$$;
CREATE OR REPLACE FUNCTION jet_ucase(t text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN length(upper(t COLLATE merivane)) = length(t) THEN upper(t COLLATE merivane)
              ELSE jetx_caseeach(t, 'upper') END
$$;
-- A sigma at the end of a word would depend on its neighbours.
CREATE OR REPLACE FUNCTION jet_lcase(t text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN length(lower(t COLLATE merivane)) = length(t) AND strpos(t COLLATE "C", 'Σ') = 0
              THEN lower(t COLLATE merivane) ELSE jetx_caseeach(t, 'lower') END
$$;
CREATE OR REPLACE FUNCTION jetx_fold(t text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT translate(jet_lcase(t) COLLATE "C", 'ſςµẛϐϑϕϖϰϱϵ', 'sσμṡβθφπκρε')
$$;

CREATE OR REPLACE FUNCTION jet_left(t text, count bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN count >= 0 THEN left(t, least(count, 2147483647)::integer)
              WHEN t IS NOT NULL THEN jet_fail(5, t || count) END
$$;
CREATE OR REPLACE FUNCTION jet_right(t text, count bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN count >= 0 THEN right(t, least(count, 2147483647)::integer)
              WHEN t IS NOT NULL THEN jet_fail(5, t || count) END
$$;
CREATE OR REPLACE FUNCTION jet_mid(t text, start bigint, count bigint DEFAULT 2147483647) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN start >= 1 AND count >= 0
              THEN substr(t, least(start, 2147483647)::integer, least(count, 2147483647)::integer)
              WHEN t IS NOT NULL AND start IS NOT NULL AND count IS NOT NULL THEN jet_fail(5, t || start || count) END
$$;

CREATE OR REPLACE FUNCTION jet_instr(start bigint, t text, wanted text, compare bigint DEFAULT 1) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  source text COLLATE "C" := t;
  part text COLLATE "C" := wanted;
  place integer;
BEGIN
  IF start < 1 OR compare NOT BETWEEN 0 AND 2 THEN
    PERFORM jet_fail(5, start);
  END IF;
  IF start > length(source) THEN
    RETURN 0;
  ELSIF part = '' THEN
    RETURN start;
  ELSIF compare > 0 THEN
    source := jetx_fold(source);
    part := jetx_fold(part);
  END IF;
  place := strpos(substr(source, start::integer), part);
  RETURN CASE WHEN place = 0 THEN 0 ELSE place + start - 1 END;
END $$;
CREATE OR REPLACE FUNCTION jet_instr(t text, wanted text) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jet_instr(1::bigint, t, wanted, 1::bigint) $$;

CREATE OR REPLACE FUNCTION jet_instrrev(t text, wanted text, start bigint DEFAULT -1, compare bigint DEFAULT 1) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  source text COLLATE "C" := t;
  part text COLLATE "C" := wanted;
  place integer;
BEGIN
  IF start < 1 AND start <> -1 OR compare NOT BETWEEN 0 AND 2 THEN
    PERFORM jet_fail(5, start);
  END IF;
  IF source = '' OR start > length(source) THEN
    RETURN 0;
  END IF;
  IF start > 0 THEN
    source := left(source, start::integer);
  END IF;
  IF part = '' THEN
    RETURN length(source);
  ELSIF compare > 0 THEN
    source := jetx_fold(source);
    part := jetx_fold(part);
  END IF;
  place := strpos(reverse(source), reverse(part));
  RETURN CASE WHEN place = 0 THEN 0 ELSE length(source) - length(part) - place + 2 END;
END $$;

CREATE OR REPLACE FUNCTION jet_replace(t text, wanted text, replacement text, start bigint DEFAULT 1,
                                       count bigint DEFAULT -1, compare bigint DEFAULT 1) RETURNS text
LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $$
DECLARE
  source text COLLATE "C" := t;
  part text COLLATE "C" := wanted;
  folded text COLLATE "C";
  result text COLLATE "C" := '';
  most bigint := coalesce(count, -1);
  mode bigint := coalesce(compare, 1);
  place integer;
BEGIN
  IF t IS NULL OR wanted IS NULL OR replacement IS NULL THEN
    RETURN NULL;
  END IF;
  IF coalesce(start, 1) < 1 OR most < -1 OR mode NOT BETWEEN 0 AND 2 THEN
    PERFORM jet_fail(5, most);
  END IF;
  source := substr(source, coalesce(start, 1)::integer);
  IF part = '' THEN
    RETURN source;
  END IF;
  folded := CASE WHEN mode > 0 THEN jetx_fold(source) ELSE source END;
  part := CASE WHEN mode > 0 THEN jetx_fold(part) ELSE part END;
  IF most = -1 AND folded = source THEN
    place := (length(source) - length(replace(source, part, ''))) / length(part); -- how often
    IF length(source)::bigint + place::bigint * (length(replacement) - length(part)) > 50000000 THEN
      PERFORM jet_fail(14, most);
    END IF;
    RETURN replace(source, part, replacement COLLATE "C");
  END IF;
  WHILE most <> 0 LOOP
    place := strpos(folded, part);
    EXIT WHEN place = 0;
    result := result || left(source, place - 1) || replacement;
    IF length(result) > 50000000 THEN
      PERFORM jet_fail(14, most);
    END IF;
    source := substr(source, place + length(part));
    folded := substr(folded, place + length(part));
    most := most - 1;
  END LOOP;
  RETURN result || source;
END $$;

CREATE OR REPLACE FUNCTION jet_strcomp(a text, b text, compare bigint DEFAULT 1) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN a IS NULL OR b IS NULL THEN NULL
              WHEN compare NOT BETWEEN 0 AND 2 THEN jet_fail(5, a || b || compare)::bigint
              WHEN compare = 0 THEN (a COLLATE "C" > b COLLATE "C")::integer - (a COLLATE "C" < b COLLATE "C")::integer
              WHEN compare > 0 THEN (a COLLATE merivane > b COLLATE merivane)::integer -
                                    (a COLLATE merivane < b COLLATE merivane)::integer END
$$;

-- 1 upper case, 2 lower case, 3 words with a capital.
CREATE OR REPLACE FUNCTION jet_strconv(t text, conversion bigint) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  lowered text COLLATE "C";
  one text COLLATE "C";
  result text COLLATE "C" := '';
  inword boolean := false;
BEGIN
  IF conversion NOT BETWEEN 1 AND 3 THEN
    PERFORM jet_fail(5, conversion);
  END IF;
  IF conversion = 1 THEN
    RETURN jet_ucase(t);
  END IF;
  lowered := jet_lcase(t);
  IF conversion = 2 THEN
    RETURN lowered;
  END IF;
  FOREACH one IN ARRAY string_to_array(lowered, NULL) LOOP
    result := result || CASE WHEN inword THEN one ELSE jet_ucase(one) END;
    inword := one IN ('''', '-') OR one ~ '^[0-9a-z]$' OR ascii(one) > 127 AND one COLLATE merivane_letters ~ '^[[:alnum:]]$';
  END LOOP;
  RETURN result;
END $$;
CREATE OR REPLACE FUNCTION jet_strconv(t text, conversion bigint, locale bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN locale IS NOT NULL THEN jet_strconv(t, conversion) END $$;

CREATE OR REPLACE FUNCTION jet_strreverse(t text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT reverse(t) $$;

CREATE OR REPLACE FUNCTION jetx_repeat(one text, count bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN count < 0 AND one IS NOT NULL THEN jet_fail(5, one || count)
              WHEN count > 50000000 AND one IS NOT NULL THEN jet_fail(14, one || count)
              ELSE repeat(one, count::integer) END
$$;
CREATE OR REPLACE FUNCTION jet_space(count bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_repeat(' ', count) $$;

-- Windows-1252; its five unassigned numbers are the control characters. The server has no character 0.
CREATE OR REPLACE FUNCTION jetx_upper1252() RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT E'€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008dŽ\u008f\u0090‘’“”•–—˜™š›œ\u009džŸ'
$$;
CREATE OR REPLACE FUNCTION jet_chr(code bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN code NOT BETWEEN 1 AND 255 THEN jet_fail(5, code)
              WHEN code BETWEEN 128 AND 159 THEN substr(jetx_upper1252(), code::integer - 127, 1)
              ELSE chr(code::integer) END
$$;
CREATE OR REPLACE FUNCTION jet_asc(t text) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN t = '' COLLATE "C" THEN jet_fail(5, t)::bigint
              WHEN ascii(t) < 128 OR ascii(t) BETWEEN 160 AND 255 THEN ascii(t)
              WHEN t IS NOT NULL THEN coalesce(nullif(strpos(jetx_upper1252() COLLATE "C", left(t, 1) COLLATE "C"), 0) + 127, 63) END
$$;
-- Of a character beyond 16 bits the first half.
CREATE OR REPLACE FUNCTION jet_ascw(t text) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN t = '' COLLATE "C" THEN jet_fail(5, t)::bigint
              WHEN ascii(t) > 65535 THEN 55296 + ((ascii(t) - 65536) >> 10) ELSE ascii(t) END
$$;
-- Half a character is none.
CREATE OR REPLACE FUNCTION jet_chrw(code bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN code NOT BETWEEN -32768 AND 65535 OR code = 0 THEN jet_fail(5, code)
              WHEN code & 65535 BETWEEN 55296 AND 57343 THEN '?' ELSE chr((code & 65535)::integer) END
$$;

CREATE OR REPLACE FUNCTION jet_string(count bigint, letter text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN count >= 0 AND count <= 50000000 AND letter = '' COLLATE "C" THEN jet_fail(5, letter)
              ELSE jetx_repeat(left(letter, 1), count) END
$$;
DO $$
DECLARE
  kind text;
BEGIN
  FOREACH kind IN ARRAY ARRAY['boolean', 'bigint', 'double precision', 'numeric', 'jet_date'] LOOP
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_string(count bigint, letter %s) RETURNS text LANGUAGE sql IMMUTABLE '
                   'PARALLEL SAFE AS ''SELECT jetx_repeat(CASE WHEN count BETWEEN 1 AND 50000000 THEN jet_chr(jet_tolong(letter) & 255) '
                   'WHEN count = 0 THEN left(jet_tolong(letter)::text, 0) WHEN letter IS NOT NULL THEN '''''''' END, count)''', kind);
  END LOOP;
END $$;

-- A leading blank for numbers not below 0, a decimal point.
CREATE OR REPLACE FUNCTION jetx_str(n numeric) RETURNS text
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE WHEN n < 0 THEN '' ELSE ' ' END || jetx_plain(n, '.', false)
$$;
CREATE OR REPLACE FUNCTION jet_str(x boolean) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN x THEN 'True' WHEN NOT x THEN 'False' END $$;
CREATE OR REPLACE FUNCTION jet_str(x bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_str(x::numeric) $$;
CREATE OR REPLACE FUNCTION jet_str(x double precision) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_str(x::numeric) $$;
CREATE OR REPLACE FUNCTION jet_str(x real) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x < 0 THEN '' ELSE ' ' END || jetx_plainto(jetx_seven(x), '.', false, 7)
$$;
CREATE OR REPLACE FUNCTION jet_str(x numeric) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_str(x) $$;
CREATE OR REPLACE FUNCTION jet_str(x jet_date) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_datetext((x).days) $$;
CREATE OR REPLACE FUNCTION jet_str(x text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_str(jet_todouble(x)::numeric) $$;

-- The range " 1: 10" in which a number falls.
CREATE OR REPLACE FUNCTION jet_partition(number bigint, start bigint, stop bigint, step bigint) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  width integer;
  low text := '';
  high text := '';
  first bigint;
BEGIN
  IF start < 0 OR stop <= start OR step < 1 THEN
    PERFORM jet_fail(5, number);
  END IF;
  width := greatest(length((start - 1)::text), length((stop + 1)::text));
  IF number < start THEN
    high := (start - 1)::text;
  ELSIF number > stop THEN
    low := (stop + 1)::text;
  ELSE
    first := start + (number - start) / step * step;
    low := first::text;
    high := least(stop, first + step - 1)::text;
  END IF;
  RETURN lpad(low, greatest(width, length(low))) || ':' || lpad(high, greatest(width, length(high)));
END $$;
