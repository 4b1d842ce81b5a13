-- What the types ask for: NULL stays NULL.

CREATE OR REPLACE FUNCTION jet_tobool(x boolean) RETURNS boolean LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x $$;
CREATE OR REPLACE FUNCTION jet_tobool(x bigint) RETURNS boolean LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x <> 0 $$;
CREATE OR REPLACE FUNCTION jet_tobool(x double precision) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x <> 0 $$;
CREATE OR REPLACE FUNCTION jet_tobool(x numeric) RETURNS boolean LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x <> 0 $$;
CREATE OR REPLACE FUNCTION jet_tobool(x jet_date) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT (x).days <> 0 $$;
CREATE OR REPLACE FUNCTION jet_tobool(x text) RETURNS boolean
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  word text COLLATE "C" := lower(btrim(x COLLATE "C", E' \t\n\u000b\f\r\u0085\u00a0'));
  n jetx_number;
BEGIN
  IF word IN ('wahr', 'true', 'ja', 'yes', 'ein', 'on') THEN
    RETURN true;
  ELSIF word IN ('falsch', 'false', 'nein', 'no', 'aus', 'off') THEN
    RETURN false;
  END IF;
  n := jetx_parse(x);
  IF n.value IS NULL THEN
    PERFORM jet_fail(3464, x);
  ELSIF abs(jetx_double(n.value)) = 'Infinity' THEN
    PERFORM jet_fail(6, x);
  END IF;
  RETURN jetx_double(n.value) <> 0;
END $$;

CREATE OR REPLACE FUNCTION jetx_tointeger(x boolean) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT -(x::integer)::bigint $$;
CREATE OR REPLACE FUNCTION jetx_tointeger(x bigint) RETURNS bigint LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x $$;
CREATE OR REPLACE FUNCTION jetx_tointeger(x double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x >= -9223372036854775808 AND x < 9223372036854775808 THEN x::bigint ELSE jet_fail(6, x)::bigint END
$$;
CREATE OR REPLACE FUNCTION jetx_tointeger(x numeric) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_whole(x) $$;
CREATE OR REPLACE FUNCTION jetx_tointeger(x jet_date) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_tointeger((x).days) $$;
CREATE OR REPLACE FUNCTION jetx_tointeger(x text) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_textwhole(x, 64) $$;

CREATE OR REPLACE FUNCTION jet_tolong(x boolean) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT -(x::integer)::bigint $$;
CREATE OR REPLACE FUNCTION jet_tolong(x bigint) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x BETWEEN -2147483648 AND 2147483647 THEN x ELSE jet_fail(6, x)::bigint END
$$;
CREATE OR REPLACE FUNCTION jet_tolong(x double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN round(x) BETWEEN -2147483648 AND 2147483647 THEN x::bigint ELSE jet_fail(6, x)::bigint END
$$;
CREATE OR REPLACE FUNCTION jet_tolong(x numeric) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN jetx_even(x) BETWEEN -2147483648 AND 2147483647 THEN jetx_even(x)::bigint
              ELSE jet_fail(6, x)::bigint END
$$;
CREATE OR REPLACE FUNCTION jet_tolong(x jet_date) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jet_tolong((x).days) $$;
CREATE OR REPLACE FUNCTION jet_tolong(x text) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN length(x) BETWEEN 1 AND 9 AND jetx_digits(x) THEN x::bigint ELSE jetx_textwhole(x, 32) END
$$;

CREATE OR REPLACE FUNCTION jet_todouble(x boolean) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT -(x::integer)::double precision $$;
CREATE OR REPLACE FUNCTION jet_todouble(x bigint) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x::double precision $$;
CREATE OR REPLACE FUNCTION jet_todouble(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x $$;
CREATE OR REPLACE FUNCTION jet_todouble(x numeric) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT (x * 10000)::bigint::double precision / 10000 $$;
CREATE OR REPLACE FUNCTION jet_todouble(x jet_date) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT (x).days $$;
CREATE OR REPLACE FUNCTION jetx_textdouble(x text) RETURNS double precision
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  result double precision := jetx_double((jetx_numberin(x)).value);
BEGIN
  IF abs(result) = 'Infinity' THEN
    PERFORM jet_fail(6, x);
  END IF;
  RETURN result;
END $$;

CREATE OR REPLACE FUNCTION jet_todouble(x text) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN length(x) BETWEEN 1 AND 15 AND jetx_digits(x) THEN x::double precision ELSE jetx_textdouble(x) END
$$;

-- Four decimals and a half are rarely exact in binary: what is a tie as far as a double can tell is one.
CREATE OR REPLACE FUNCTION jetx_doublemoney(x double precision, scaled double precision) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN scaled >= -9223372036854775808 AND scaled < 9223372036854775808 THEN
           0.0001 * CASE WHEN abs(scaled) < 8796093022208 AND abs(scaled) > 0.25 AND
                              abs(scaled - floor(scaled) - 0.5) <= abs(scaled) * 4.440892098500626e-16
                         THEN floor(scaled)::bigint + abs(floor(scaled)::bigint % 2)
                         ELSE scaled::bigint END
         ELSE jet_fail(6, x)::numeric END
$$;
CREATE OR REPLACE FUNCTION jet_tocurrency(x boolean) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT -(x::integer)::numeric $$;
CREATE OR REPLACE FUNCTION jet_tocurrency(x bigint) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x BETWEEN -922337203685477 AND 922337203685477 THEN x::numeric ELSE jet_fail(6, x)::numeric END
$$;
CREATE OR REPLACE FUNCTION jet_tocurrency(x double precision) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN abs(x) < 1e16 THEN jetx_doublemoney(x, x * 10000) ELSE jet_fail(6, x)::numeric END
$$;
CREATE OR REPLACE FUNCTION jet_tocurrency(x numeric) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_money(x) $$;
CREATE OR REPLACE FUNCTION jet_tocurrency(x jet_date) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jet_tocurrency((x).days) $$;
CREATE OR REPLACE FUNCTION jet_tocurrency(x text) RETURNS numeric
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  n jetx_number := jetx_numberin(x);
BEGIN
  IF abs(n.value) >= 1e16 THEN
    PERFORM jet_fail(6, x);
  END IF;
  RETURN jetx_money(n.value);
END $$;

CREATE OR REPLACE FUNCTION jet_tobyte(x bigint) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x BETWEEN 0 AND 255 THEN x ELSE jet_fail(6, x)::bigint END
$$;
CREATE OR REPLACE FUNCTION jet_toshort(x bigint) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x BETWEEN -32768 AND 32767 THEN x ELSE jet_fail(6, x)::bigint END
$$;
CREATE OR REPLACE FUNCTION jet_tobyte(x text) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jet_tobyte(jetx_textwhole(x, 16)) $$;
CREATE OR REPLACE FUNCTION jet_toshort(x text) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_textwhole(x, 16) $$;
DO $$
DECLARE
  kind text;
BEGIN
  FOREACH kind IN ARRAY ARRAY['boolean', 'double precision', 'numeric', 'jet_date'] LOOP
    EXECUTE 'CREATE OR REPLACE FUNCTION jet_tobyte(x ' || kind || ') RETURNS bigint LANGUAGE sql IMMUTABLE PARALLEL SAFE '
            'AS ''SELECT jet_tobyte(jetx_tointeger(x))''';
    EXECUTE 'CREATE OR REPLACE FUNCTION jet_toshort(x ' || kind || ') RETURNS bigint LANGUAGE sql IMMUTABLE PARALLEL SAFE '
            'AS ''SELECT jet_toshort(jetx_tointeger(x))''';
  END LOOP;
END $$;

CREATE OR REPLACE FUNCTION jet_todate(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x > -657435 AND x < 2958466 THEN x ELSE jet_fail(6, x)::double precision END
$$;
CREATE OR REPLACE FUNCTION jet_todate(x boolean) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jet_todouble(x) $$;
CREATE OR REPLACE FUNCTION jet_todate(x bigint) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jet_todate(x::double precision) $$;
CREATE OR REPLACE FUNCTION jet_todate(x numeric) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jet_todate(jet_todouble(x)) $$;
CREATE OR REPLACE FUNCTION jet_todate(x jet_date) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT (x).days $$;
CREATE OR REPLACE FUNCTION jet_todate(x text) RETURNS double precision
LANGUAGE plpgsql STABLE STRICT PARALLEL SAFE AS $$
DECLARE
  days double precision := jetx_parsedate(x);
BEGIN
  IF days IS NULL THEN
    PERFORM jet_fail(13, x);
  END IF;
  RETURN days;
END $$;

CREATE OR REPLACE FUNCTION jet_totext(x boolean) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN x THEN 'Wahr' WHEN NOT x THEN 'Falsch' END $$;
CREATE OR REPLACE FUNCTION jet_totext(x bigint) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x::text $$;
CREATE OR REPLACE FUNCTION jet_totext(x double precision) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN abs(x) < 1e15 AND x = trunc(x) THEN x::bigint::text
              WHEN abs(x) >= 0.0001 AND abs(x) < 1e15 AND length(abs(x)::text) <= 16 THEN translate(x::text, '.', ',')
              ELSE jetx_doubletext(x) END
$$;
CREATE OR REPLACE FUNCTION jet_totext(x numeric) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT translate(trim_scale(x)::text, '.', ',') $$;
CREATE OR REPLACE FUNCTION jet_totext(x jet_date) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_datetext((x).days) $$;
CREATE OR REPLACE FUNCTION jet_totext(x text) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x $$;

-- IsNumeric, IsDate and TypeName know Null.
CREATE OR REPLACE FUNCTION jet_isnumeric(x boolean) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x IS NOT NULL $$;
CREATE OR REPLACE FUNCTION jet_isnumeric(x bigint) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x IS NOT NULL $$;
CREATE OR REPLACE FUNCTION jet_isnumeric(x double precision) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x IS NOT NULL $$;
CREATE OR REPLACE FUNCTION jet_isnumeric(x numeric) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x IS NOT NULL $$;
CREATE OR REPLACE FUNCTION jet_isnumeric(x jet_date) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT false $$;
CREATE OR REPLACE FUNCTION jet_isnumeric(x text) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x IS NULL OR strpos(E' \t\n\r\u00a00123456789,+-(€&' COLLATE "C", left(x, 1) COLLATE "C") < 2 AND
                   left(x, 1) COLLATE "C" <> ' ' THEN false
              WHEN length(x) BETWEEN 1 AND 300 AND jetx_digits(x) THEN true
              ELSE coalesce(abs(jetx_double((jetx_parse(x)).value)) < 'Infinity', false) END
$$;

CREATE OR REPLACE FUNCTION jet_isdate(x boolean) RETURNS boolean LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT false $$;
CREATE OR REPLACE FUNCTION jet_isdate(x bigint) RETURNS boolean LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT false $$;
CREATE OR REPLACE FUNCTION jet_isdate(x double precision) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT false $$;
CREATE OR REPLACE FUNCTION jet_isdate(x numeric) RETURNS boolean LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT false $$;
CREATE OR REPLACE FUNCTION jet_isdate(x jet_date) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT (x).days IS NOT NULL $$;
CREATE OR REPLACE FUNCTION jet_isdate(x text) RETURNS boolean
LANGUAGE sql STABLE PARALLEL SAFE AS $$ SELECT jetx_parsedate(x) IS NOT NULL $$;

CREATE OR REPLACE FUNCTION jet_typename(x boolean) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN x IS NULL THEN 'Null' ELSE 'Boolean' END $$;
CREATE OR REPLACE FUNCTION jet_typename(x bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN x IS NULL THEN 'Null' ELSE 'Long' END $$;
CREATE OR REPLACE FUNCTION jet_typename(x double precision) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN x IS NULL THEN 'Null' ELSE 'Double' END $$;
CREATE OR REPLACE FUNCTION jet_typename(x numeric) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN x IS NULL THEN 'Null' ELSE 'Currency' END $$;
CREATE OR REPLACE FUNCTION jet_typename(x jet_date) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN (x).days IS NULL THEN 'Null' ELSE 'Date' END $$;
CREATE OR REPLACE FUNCTION jet_typename(x text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN x IS NULL THEN 'Null' ELSE 'String' END $$;

-- The conversion functions of the dialect refuse Null.
CREATE OR REPLACE FUNCTION jetx_single(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN abs(x) < 3.4028234663852886e38 THEN
                CASE WHEN abs(x) < 7.006492321624085e-46 THEN 0 ELSE x::real::double precision END
              ELSE jet_fail(6, x)::double precision END
$$;
DO $$
DECLARE
  kind text;
  pair text[];
  field text;
BEGIN
  FOREACH kind IN ARRAY ARRAY['boolean', 'bigint', 'double precision', 'numeric', 'jet_date', 'text'] LOOP
    field := CASE kind WHEN 'jet_date' THEN '(x).days' ELSE 'x' END;
    FOREACH pair SLICE 1 IN ARRAY ARRAY[['cbool', 'tobool', 'boolean'], ['cbyte', 'tobyte', 'bigint'],
        ['cint', 'toshort', 'bigint'], ['clng', 'tolong', 'bigint'], ['cdbl', 'todouble', 'double precision'],
        ['ccur', 'tocurrency', 'numeric'], ['cdate', 'todate', 'double precision'], ['cstr', 'totext', 'text']] LOOP
      EXECUTE format('CREATE OR REPLACE FUNCTION jet_%s(x %s) RETURNS %s LANGUAGE sql %s PARALLEL SAFE AS '
                     '''SELECT CASE WHEN %s IS NULL THEN jet_fail(94, coalesce(%s IS NULL, false))::%s ELSE jet_%s(x) END''',
                     pair[1], kind, pair[3], CASE WHEN pair[2] = 'todate' THEN 'STABLE' ELSE 'IMMUTABLE' END,
                     field, field, pair[3], pair[2]);
    END LOOP;
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_csng(x %s) RETURNS double precision LANGUAGE sql IMMUTABLE PARALLEL SAFE AS '
                   '''SELECT CASE WHEN %s IS NULL THEN jet_fail(94, coalesce(%s IS NULL, false))::double precision '
                   'ELSE jetx_single(jet_todouble(x)) END''', kind, field, field);
  END LOOP;
END $$;

-- A single travels as a double that has its value; where its digits are shown it is told apart as a real.
DO $$
DECLARE
  kind text;
BEGIN
  FOREACH kind IN ARRAY ARRAY['boolean', 'bigint', 'double precision', 'numeric', 'jet_date', 'text'] LOOP
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_tosingle(x %s) RETURNS double precision LANGUAGE sql IMMUTABLE PARALLEL '
                   'SAFE AS ''SELECT CASE WHEN jet_todouble(x) IS NOT NULL THEN jetx_single(jet_todouble(x)) END''', kind);
  END LOOP;
END $$;
CREATE OR REPLACE FUNCTION jet_totext(x real) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_plainto(jetx_seven(x), ',', true, 7) $$;
CREATE OR REPLACE FUNCTION jet_cstr(x real) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x IS NULL THEN jet_fail(94, x IS NULL) ELSE jet_totext(x) END
$$;
CREATE OR REPLACE FUNCTION jet_typename(x real) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN x IS NULL THEN 'Null' ELSE 'Single' END $$;
