-- Operators.

CREATE OR REPLACE FUNCTION jetx_intdivide(a bigint, b bigint) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN b <> 0 THEN a / b WHEN a IS NOT NULL THEN jet_fail(11, a::text || b)::bigint END
$$;
CREATE OR REPLACE FUNCTION jetx_mod(a bigint, b bigint) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN b <> 0 THEN a % b WHEN a IS NOT NULL THEN jet_fail(11, a::text || b)::bigint END
$$;

-- Exact, half to even.
CREATE OR REPLACE FUNCTION jet_multiply(a numeric, b numeric) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_money(a * b) $$;

CREATE OR REPLACE FUNCTION jet_power(base double precision, exponent double precision) RETURNS double precision
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  IF base = 0 AND exponent < 0 OR base < 0 AND exponent <> trunc(exponent) THEN
    PERFORM jet_fail(5, base);
  ELSIF base = 0 THEN
    RETURN CASE WHEN exponent = 0 THEN 1 ELSE 0 END;
  ELSIF exponent * ln(abs(base)) < -745.1333 THEN
    RETURN 0;
  ELSIF exponent * ln(abs(base)) > 710 THEN
    PERFORM jet_fail(6, base);
  END IF;
  RETURN power(base, exponent);
END $$;

-- Functions that keep the kind of their argument. Texts are numbers, dates are days.

CREATE OR REPLACE FUNCTION jet_int(x bigint) RETURNS bigint LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x $$;
CREATE OR REPLACE FUNCTION jet_int(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT floor(x) $$;
-- Money cannot hold the whole number below its smallest amount.
CREATE OR REPLACE FUNCTION jet_int(x numeric) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x < -922337203685476.5808 THEN jet_fail(6, x)::numeric ELSE floor(x) END
$$;
CREATE OR REPLACE FUNCTION jet_fix(x bigint) RETURNS bigint LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT x $$;
CREATE OR REPLACE FUNCTION jet_fix(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT trunc(x) $$;
CREATE OR REPLACE FUNCTION jet_fix(x numeric) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT trunc(x) $$;
CREATE OR REPLACE FUNCTION jet_sgn(x bigint) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT sign(x)::bigint $$;
CREATE OR REPLACE FUNCTION jet_sgn(x double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT sign(x)::bigint $$;
CREATE OR REPLACE FUNCTION jet_sgn(x numeric) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT sign(x)::bigint $$;

CREATE OR REPLACE FUNCTION jet_round(x bigint, digits bigint DEFAULT 0) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN jet_tolong(digits) < 0 AND x IS NOT NULL THEN jet_fail(5, x::text || digits)::bigint WHEN digits IS NOT NULL THEN x END
$$;
-- The digits that people see are rounded.
CREATE OR REPLACE FUNCTION jet_round(x double precision, digits bigint DEFAULT 0) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN jet_tolong(digits) < 0 AND x IS NOT NULL THEN jet_fail(5, x::text || digits)::double precision
              WHEN digits IS NOT NULL THEN jetx_double(jetx_even(x::numeric, least(greatest(digits, 0), 400)::integer)) END
$$;
CREATE OR REPLACE FUNCTION jet_round(x real, digits bigint DEFAULT 0) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jet_tosingle(jet_round(x::double precision, digits)) $$;
CREATE OR REPLACE FUNCTION jet_round(x numeric, digits bigint DEFAULT 0) RETURNS numeric
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN jet_tolong(digits) < 0 AND x IS NOT NULL THEN jet_fail(5, x::text || digits)::numeric
              WHEN digits >= 4 THEN x
              WHEN digits IS NOT NULL THEN jetx_money(jetx_even(x, greatest(digits, 0)::integer)) END
$$;

CREATE OR REPLACE FUNCTION jetx_hex(x bigint) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT upper((CASE WHEN x BETWEEN -2147483648 AND -1 THEN to_hex(x::integer) ELSE to_hex(x) END) COLLATE "C")
$$;
CREATE OR REPLACE FUNCTION jetx_oct(x bigint) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  rest numeric := CASE WHEN x >= 0 THEN x WHEN x >= -2147483648 THEN x + 4294967296 ELSE x + 18446744073709551616 END;
  digits text := '';
BEGIN
  LOOP
    digits := mod(rest, 8)::text || digits;
    rest := div(rest, 8);
    EXIT WHEN rest = 0;
  END LOOP;
  RETURN digits;
END $$;

DO $$
DECLARE
  name text;
  result text;
  kinds CONSTANT text[] := ARRAY['boolean', 'double precision', 'numeric', 'jet_date', 'text'];
  kind text;
  other text;
BEGIN
  FOREACH name IN ARRAY ARRAY['int', 'fix', 'sgn'] LOOP
    result := CASE name WHEN 'sgn' THEN 'bigint' ELSE 'double precision' END;
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_%s(x boolean) RETURNS bigint LANGUAGE sql IMMUTABLE PARALLEL SAFE AS '
                   '''SELECT jet_%s(jet_tolong(x))''', name, name);
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_%s(x jet_date) RETURNS %s LANGUAGE sql IMMUTABLE PARALLEL SAFE AS '
                   '''SELECT jet_%s((x).days)''', name, result, name);
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_%s(x text) RETURNS %s LANGUAGE sql IMMUTABLE PARALLEL SAFE AS '
                   '''SELECT jet_%s(jet_todouble(x))''', name, result, name);
  END LOOP;
  EXECUTE 'CREATE OR REPLACE FUNCTION jet_round(x boolean, digits bigint DEFAULT 0) RETURNS bigint LANGUAGE sql IMMUTABLE '
          'PARALLEL SAFE AS ''SELECT jet_round(jet_tolong(x), digits)''';
  EXECUTE 'CREATE OR REPLACE FUNCTION jet_round(x jet_date, digits bigint DEFAULT 0) RETURNS double precision LANGUAGE sql '
          'IMMUTABLE PARALLEL SAFE AS ''SELECT jet_round((x).days, digits)''';
  EXECUTE 'CREATE OR REPLACE FUNCTION jet_round(x text, digits bigint DEFAULT 0) RETURNS double precision LANGUAGE sql '
          'IMMUTABLE PARALLEL SAFE AS ''SELECT CASE WHEN jet_tolong(digits) < 0 AND x IS NOT NULL '
          'THEN jet_fail(5, x || digits)::double precision WHEN digits IS NOT NULL THEN jet_round(jet_todouble(x), digits) END''';

  -- Both sides of \ and MOD are rounded to whole numbers first.
  FOREACH name IN ARRAY ARRAY['intdivide', 'mod'] LOOP
    FOREACH kind IN ARRAY kinds || ARRAY['bigint'] LOOP
      FOREACH other IN ARRAY kinds || ARRAY['bigint'] LOOP
        EXECUTE format('CREATE OR REPLACE FUNCTION jet_%s(a %s, b %s) RETURNS bigint LANGUAGE sql IMMUTABLE PARALLEL SAFE AS '
                       '''SELECT CASE WHEN a IS NOT NULL AND b IS NOT NULL '
                       'THEN jetx_%s(jetx_tointeger(a), jetx_tointeger(b)) END''', name, kind, other, name);
      END LOOP;
    END LOOP;
  END LOOP;

  -- The whole number in another base; negative ones as 32 bits when they fit.
  FOREACH kind IN ARRAY kinds || ARRAY['bigint'] LOOP
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_hex(x %s) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS '
                   '''SELECT jetx_hex(jetx_tointeger(x))''', kind);
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_oct(x %s) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS '
                   '''SELECT jetx_oct(jetx_tointeger(x))''', kind);
  END LOOP;
END $$;

CREATE OR REPLACE FUNCTION jet_sqr(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x >= 0 THEN sqrt(x) ELSE jet_fail(5, x)::double precision END
$$;
CREATE OR REPLACE FUNCTION jet_log(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x > 0 THEN ln(x) ELSE jet_fail(5, x)::double precision END
$$;
CREATE OR REPLACE FUNCTION jet_exp(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN x < -745.1333 THEN 0 WHEN x > 709.7827 THEN jet_fail(6, x)::double precision ELSE exp(x) END
$$;
CREATE OR REPLACE FUNCTION jet_sin(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT sin(x) $$;
CREATE OR REPLACE FUNCTION jet_cos(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT cos(x) $$;
CREATE OR REPLACE FUNCTION jet_tan(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT tan(x) $$;
CREATE OR REPLACE FUNCTION jet_atn(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT atan(x) $$;

-- Basic's row of 24 bits. It belongs to the connection and begins anew with it.
CREATE OR REPLACE FUNCTION jet_rnd(number double precision DEFAULT 1) RETURNS double precision
LANGUAGE plpgsql VOLATILE PARALLEL UNSAFE AS $$
DECLARE
  state bigint := coalesce(nullif(current_setting('merivane.rnd', true), ''), '327680');
  bits bigint;
BEGIN
  IF number < 0 THEN
    bits := ('x' || encode(float4send((CASE WHEN number > -1e-46 THEN -0.0 ELSE greatest(number, -3e38) END)::real), 'hex'))::bit(32)::bigint;
    state := (bits + (bits >> 24)) & 16777215;
  END IF;
  IF number IS DISTINCT FROM 0 THEN
    state := (state * 1140671485 + 12820163) & 16777215;
    PERFORM set_config('merivane.rnd', state::text, false);
  END IF;
  RETURN state / 16777216::double precision;
END $$;
