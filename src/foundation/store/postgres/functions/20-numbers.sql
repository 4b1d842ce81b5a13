-- Half to even at so many decimal places.
CREATE OR REPLACE FUNCTION jetx_even(n numeric, places integer) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN abs(n - round(n, places)) * 2 = ('1e' || -places)::numeric
               AND mod(round(n, places) * ('1e' || places)::numeric, 2) <> 0
              THEN round(n, places) - sign(n) * ('1e' || -places)::numeric
              ELSE round(n, places) END
$$;

CREATE OR REPLACE FUNCTION jetx_even(n numeric) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN abs(n - round(n)) = 0.5 AND mod(round(n), 2) <> 0 THEN round(n) - sign(n) ELSE round(n) END
$$;

-- Money: four places, half to even, 64 bits of ten-thousandths.
CREATE OR REPLACE FUNCTION jetx_money(n numeric) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN abs(n) >= 922337203685477 AND
                   jetx_even(n, 4) NOT BETWEEN -922337203685477.5808 AND 922337203685477.5807
              THEN jet_fail(6, n)::numeric
              WHEN abs(n - round(n, 4)) = 0.00005 AND mod(round(n, 4) * 10000, 2) <> 0
              THEN round(n, 4) - sign(n) * 0.0001
              ELSE round(n, 4) END
$$;

CREATE OR REPLACE FUNCTION jetx_whole(n numeric) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN jetx_even(n) BETWEEN -9223372036854775808 AND 9223372036854775807 THEN jetx_even(n)::bigint
              ELSE jet_fail(6, n)::bigint END
$$;

-- The nearest double; 0 and infinity where there is none, which the server's own conversion refuses.
CREATE OR REPLACE FUNCTION jetx_double(n numeric) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN abs(n) < 2.4703282292062328e-324 THEN 0
              WHEN abs(n) >= 1.797693134862315808e308 THEN sign(n)::double precision * 'Infinity'::double precision
              ELSE n::double precision END
$$;

-- A number with its decimal digits; of a double people see 15 at most, which is what the server's cast to numeric keeps.
-- Plain as long as 15 places do, else "1,5E-20". Money and whole numbers keep up to 19 places.
CREATE OR REPLACE FUNCTION jetx_plain(n numeric, point text, zero boolean) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  size numeric := trim_scale(abs(n));
  plain text COLLATE "C" := size::text;
  digits text COLLATE "C";
  power integer;
BEGIN
  IF n = 0 THEN
    RETURN '0';
  END IF;
  digits := trim(BOTH '0' FROM replace(plain, '.', ''));
  IF size < 1 THEN
    power := length(digits) - scale(size) - 1;
  ELSE
    power := length(trunc(size)::text) - 1;
  END IF;
  IF size >= 1 AND (power < 15 OR length(digits) > 15 AND power < 19) OR size < 1 AND scale(size) <= 15 THEN
    IF size < 1 AND NOT zero THEN
      plain := substr(plain, 2);
    END IF;
  ELSE
    plain := left(digits, 1) || CASE WHEN length(digits) > 1 THEN '.' || substr(digits, 2) ELSE '' END || 'E' ||
             CASE WHEN power < 0 THEN '-' ELSE '+' END || lpad(abs(power)::text, greatest(2, length(abs(power)::text)), '0');
  END IF;
  RETURN CASE WHEN n < 0 THEN '-' ELSE '' END || replace(plain, '.', point COLLATE "C");
END $$;

CREATE OR REPLACE FUNCTION jetx_doubletext(x double precision) RETURNS text
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE WHEN x = 'NaN' THEN '-1,#IND' WHEN x = 'Infinity' THEN '1,#INF' WHEN x = '-Infinity' THEN '-1,#INF'
              ELSE jetx_plain(x::numeric, ',', true) END
$$;

-- Nothing but digits, as most numbers in texts are.
CREATE OR REPLACE FUNCTION jetx_digits(t text) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT translate(t, '0123456789', '') COLLATE "C" = '' $$;

-- The number that a whole text holds, NULL when it is none: blanks and one € around it, a sign before or behind, or
-- brackets for a negative one; "." groups, "," is the decimal comma; "&H1F" and "&O17".
CREATE OR REPLACE FUNCTION jetx_parse(source text) RETURNS jetx_number
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  blanks CONSTANT text COLLATE "C" := E' \t\n\r\u00a0';
  t text COLLATE "C" := btrim(source COLLATE "C", blanks);
  parts text[] COLLATE "C";
  before text COLLATE "C";
  behind text COLLATE "C";
  signs text COLLATE "C";
  digits text COLLATE "C";
  told text COLLATE "C";
  exponent bigint := 0;
  bits numeric := 0;
  result jetx_number;
BEGIN
  IF t ~ '^[0-9]{1,200}$' THEN
    RETURN ROW(t::numeric, false)::jetx_number;
  END IF;
  IF t ~ '^&[HhOo]' THEN
    digits := substring(t FROM CASE WHEN t ~ '^&[Hh]' THEN '^..([0-9A-Fa-f]+)&?$' ELSE '^..([0-7]+)&?$' END);
    IF digits IS NULL THEN
      RETURN NULL;
    END IF;
    digits := ltrim(digits, '0');
    IF length(digits) > 22 OR length(digits) > 16 AND t ~ '^&[Hh]' THEN
      RETURN NULL;
    END IF;
    FOR i IN 1 .. length(digits) LOOP
      bits := bits * CASE WHEN t ~ '^&[Hh]' THEN 16 ELSE 8 END + strpos('0123456789ABCDEF', upper(substr(digits, i, 1))) - 1;
    END LOOP;
    IF bits >= 18446744073709551616 THEN
      RETURN NULL;
    END IF;
    RETURN ROW(bits, true)::jetx_number;
  END IF;
  parts := regexp_match(t, E'^([ \t\n\r\u00a0+(€-]*)([0-9][0-9.]*)?(,[0-9]*)?([eEdD][+-]?[0-9]+)?([ \t\n\r\u00a0+)€-]*)$');
  IF parts IS NULL OR parts[2] IS NULL AND coalesce(parts[3], ',') = ',' THEN
    RETURN NULL;
  END IF;
  before := translate(parts[1], blanks, '');
  behind := translate(parts[5], blanks, '');
  IF length(replace(before || behind, '€', '')) < length(before || behind) - 1 THEN
    RETURN NULL;
  END IF;
  before := replace(before, '€', '');
  behind := replace(behind, '€', '');
  signs := before || behind;
  IF signs NOT IN ('', '+', '-', '()') OR before = '' AND behind = '()' OR before = '()' THEN
    RETURN NULL;
  END IF;
  digits := replace(coalesce(parts[2], ''), '.', '') || substr(coalesce(parts[3], ''), 2);
  exponent := -length(substr(coalesce(parts[3], ''), 2));
  IF parts[4] IS NOT NULL THEN
    told := ltrim(ltrim(substr(parts[4], 2), '+-'), '0');
    exponent := exponent + CASE WHEN substr(parts[4], 2, 1) = '-' THEN -1 ELSE 1 END *
                CASE WHEN length(told) > 9 THEN 1000000000 ELSE coalesce(nullif(told, ''), '0')::bigint END;
  END IF;
  digits := ltrim(digits, '0');
  IF length(digits) > 1000 THEN -- no type keeps more
    exponent := exponent + length(digits) - 1000;
    digits := left(digits, 1000);
  END IF;
  result.bits := false;
  result.value := CASE WHEN digits = '' OR length(digits) + exponent < -400 THEN 0
                       WHEN length(digits) + exponent > 400 THEN 'Infinity'
                       ELSE (digits || 'e' || exponent)::numeric END;
  IF signs IN ('-', '()') THEN
    result.value := -result.value;
  END IF;
  RETURN result;
END $$;

-- Bits as a signed number of that width.
CREATE OR REPLACE FUNCTION jetx_signed(bits numeric, width integer) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN bits >= power(2::numeric, width) THEN jet_fail(6, bits)::numeric
              WHEN bits >= power(2::numeric, width - 1) THEN trunc(bits - power(2::numeric, width))
              ELSE bits END
$$;

CREATE OR REPLACE FUNCTION jetx_numberin(source text) RETURNS jetx_number
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  n jetx_number := jetx_parse(source);
BEGIN
  IF n.value IS NULL THEN
    PERFORM jet_fail(13, source);
  END IF;
  IF n.bits AND n.value >= 4294967296 THEN
    n.value := jetx_signed(n.value, 64);
  ELSIF n.bits THEN
    n.value := jetx_signed(n.value, 32);
  END IF;
  RETURN n;
END $$;

-- A text as a whole number of a type of that many bits, which "&HFFFF" depends on.
CREATE OR REPLACE FUNCTION jetx_textwhole(source text, width integer) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  n jetx_number := jetx_parse(source);
  whole numeric;
BEGIN
  IF n.value IS NULL THEN
    PERFORM jet_fail(13, source);
  END IF;
  IF n.bits THEN
    RETURN jetx_signed(n.value, CASE WHEN width = 64 AND n.value < 4294967296 THEN 32 ELSE width END);
  END IF;
  IF abs(n.value) = 'Infinity' THEN
    PERFORM jet_fail(6, source);
  END IF;
  whole := jetx_whole(n.value);
  IF whole < -power(2::numeric, width - 1) OR whole >= power(2::numeric, width - 1) THEN
    PERFORM jet_fail(6, source);
  END IF;
  RETURN whole;
END $$;

-- The number that a text begins with, decimal point, 0 when it is none.
CREATE OR REPLACE FUNCTION jetx_val(source text) RETURNS double precision
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  t text COLLATE "C" := translate(source COLLATE "C", E' \t\n\r\u00a0', '');
  parts text[] COLLATE "C";
  n jetx_number;
  x double precision;
BEGIN
  IF t ~ '^&[HhOo]' THEN
    t := substring(t FROM CASE WHEN t ~ '^&[Hh]' THEN '^&[Hh][0-9A-Fa-f]*&?' ELSE '^&[Oo][0-7]*&?' END);
    IF t ~ '^&.&?$' THEN
      RETURN 0;
    END IF;
    n := jetx_parse(t);
    IF n.value IS NULL THEN
      RETURN 1.7976931348623157e308;
    END IF;
    RETURN jetx_signed(n.value, CASE WHEN n.value >= 4294967296 THEN 64
                                     WHEN n.value >= 65536 OR right(t, 1) = '&' THEN 32 ELSE 16 END);
  END IF;
  parts := regexp_match(t, '^([+-]?)([0-9]*)(?:[.]([0-9]*))?([eEdD][+-]?[0-9]+)?');
  IF parts[2] = '' AND coalesce(parts[3], '') = '' THEN
    RETURN 0;
  END IF;
  n := jetx_parse(parts[1] || coalesce(nullif(parts[2], ''), '0') || ',' || coalesce(parts[3], '') || coalesce(parts[4], ''));
  x := jetx_double(n.value);
  RETURN CASE WHEN abs(x) = 'Infinity' THEN sign(x) * 1.7976931348623157e308 ELSE x END;
END $$;

CREATE OR REPLACE FUNCTION jet_val(source text) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN source IS NULL THEN jet_fail(94, source IS NULL)::double precision ELSE jetx_val(source) END
$$;
