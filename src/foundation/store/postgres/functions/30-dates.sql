-- Day and second of a date in days since 30.12.1899; the fraction of a negative one counts upwards.
CREATE OR REPLACE FUNCTION jetx_isdate(days double precision) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT days > -657435 AND days < 2958466 AND trunc(days) + (abs(days - trunc(days)) * 86400 >= 86399.5)::integer <= 2958465
$$;

CREATE OR REPLACE FUNCTION jetx_day(days double precision) RETURNS integer
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN jetx_isdate(days) THEN trunc(days)::integer + (abs(days - trunc(days)) * 86400 >= 86399.5)::integer
              ELSE jet_fail(5, days)::integer END
$$;

CREATE OR REPLACE FUNCTION jetx_second(days double precision) RETURNS integer
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN jetx_isdate(days) THEN floor(abs(days - trunc(days)) * 86400 + 0.5)::integer % 86400
              ELSE jet_fail(5, days)::integer END
$$;

CREATE OR REPLACE FUNCTION jetx_calendar(day integer) RETURNS date
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT date '1899-12-30' + day $$;

CREATE OR REPLACE FUNCTION jetx_moment(day bigint, seconds bigint) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN day NOT BETWEEN -657434 AND 2958465 THEN jet_fail(5, day)::double precision
              WHEN day < 0 THEN day - seconds / 86400::double precision
              ELSE day + seconds / 86400::double precision END
$$;

-- The day of a date of the Gregorian calendar, for any month and day that run over.
CREATE OR REPLACE FUNCTION jetx_civil(year bigint, month bigint, day bigint) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  months bigint := year * 12 + month - 1;
  y bigint := jetx_floor(months, 12);
  m bigint := months - y * 12; -- from 0
  era bigint;
BEGIN
  IF y < -9999 OR y > 19999 THEN
    PERFORM jet_fail(5, year);
  END IF;
  -- Years that begin in March have their leap day at the end.
  IF m < 2 THEN
    y := y - 1;
  END IF;
  m := (m + 10) % 12;
  era := jetx_floor(y, 400);
  y := y - era * 400;
  RETURN era * 146097 + y * 365 + y / 4 - y / 100 + (153 * m + 2) / 5 + day - 1 - 693899;
END $$;

-- NULL for a day that the calendar does not have.
CREATE OR REPLACE FUNCTION jetx_validday(year integer, month integer, day integer) RETURNS integer
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT CASE WHEN year BETWEEN 100 AND 9999 AND month BETWEEN 1 AND 12 AND day >= 1 AND
                   day <= jetx_civil(year, month + 1, 1) - jetx_civil(year, month, 1)
              THEN jetx_civil(year, month, day)::integer END
$$;

CREATE OR REPLACE FUNCTION jetx_parts(year bigint, month bigint, day bigint, seconds bigint) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT jetx_moment(jetx_civil(year + CASE WHEN year BETWEEN 0 AND 29 THEN 2000 WHEN year BETWEEN 30 AND 99 THEN 1900 ELSE 0 END,
                                month, day) + jetx_floor(seconds, 86400),
                     seconds - jetx_floor(seconds, 86400) * 86400)
$$;

CREATE OR REPLACE FUNCTION jetx_clock(seconds integer) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT lpad((seconds / 3600)::text, 2, '0') || ':' || lpad((seconds / 60 % 60)::text, 2, '0') || ':' ||
         lpad((seconds % 60)::text, 2, '0')
$$;

CREATE OR REPLACE FUNCTION jetx_daytext(day integer) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
BEGIN
  RETURN to_char(jetx_calendar(day), 'DD.MM.YYYY');
END $$;

-- dd.mm.yyyy, with hh:mm:ss unless midnight; the time alone on day 0; empty outside the calendar.
CREATE OR REPLACE FUNCTION jetx_datetext(days double precision) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  day integer;
  second integer;
BEGIN
  IF NOT jetx_isdate(days) THEN
    RETURN '';
  END IF;
  day := jetx_day(days);
  second := jetx_second(days);
  RETURN CASE WHEN day = 0 THEN jetx_clock(second)
              WHEN second = 0 THEN jetx_daytext(day)
              ELSE jetx_daytext(day) || ' ' || jetx_clock(second) END;
END $$;

-- For other tools that read the tables: SELECT store_timestamp("Datum") ...
CREATE OR REPLACE FUNCTION store_timestamp(days double precision) RETURNS timestamp without time zone
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT timestamp '1899-12-30' + interval '1 day' * trunc(days) +
         interval '1 second' * floor(abs(days - trunc(days)) * 86400 + 0.5)
$$;

-- A year of one or two digits (n) is near.
CREATE OR REPLACE FUNCTION jetx_century(shape text, year integer) RETURNS integer
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT year + CASE WHEN shape = 'N' COLLATE "C" THEN 0 WHEN year <= 29 THEN 2000 ELSE 1900 END
$$;

-- Day, month and year as d m y, unless only another order makes a date; the shape is "n.n.N" and the like.
CREATE OR REPLACE FUNCTION jetx_orderdate(shape text, a integer, b integer, c integer) RETURNS integer
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN substr(shape, 3, 1) = 'N' COLLATE "C" THEN NULL
              WHEN left(shape, 1) = 'N' COLLATE "C" AND right(shape, 1) = 'N' COLLATE "C" THEN NULL
              WHEN left(shape, 1) = 'N' COLLATE "C" THEN coalesce(jetx_validday(a, b, c), jetx_validday(a, c, b))
              ELSE coalesce(jetx_validday(jetx_century(right(shape, 1), c), b, a),
                            jetx_validday(jetx_century(right(shape, 1), c), a, b),
                            CASE WHEN right(shape, 1) = 'n' COLLATE "C"
                                 THEN jetx_validday(jetx_century('n', a), b, c) END) END
$$;

-- A date as somebody wrote it, NULL when it is none; a year that is not told is the one that runs where the caller is.
CREATE OR REPLACE FUNCTION jetx_parsedate(source text) RETURNS double precision
LANGUAGE plpgsql STABLE STRICT PARALLEL SAFE AS $$
DECLARE
  rest text COLLATE "C" := btrim(source COLLATE "C", E' \t\n\u000b\f\r\u0085\u00a0\u1680\u2000\u2001\u2002\u2003\u2004' ||
                                 E'\u2005\u2006\u2007\u2008\u2009\u200a\u2028\u2029\u202f\u205f\u3000');
  part text[] COLLATE "C";
  word text COLLATE "C";
  -- One letter for each token: n, N numbers of up to two and of more digits, M month, W weekday, a p halves of the day.
  shape text COLLATE "C" := '';
  v integer[] := '{}';
  at integer := 1;
  start integer;
  day integer;
  hour integer := 0;
  minute integer := 0;
  second integer := 0;
  hasdate boolean := false;
  hastime boolean := false;
  found integer;
  ok boolean;
  thisyear CONSTANT integer := coalesce(nullif(current_setting('merivane.year', true), '')::integer,
                                        extract(year FROM current_date)::integer);
BEGIN
  WHILE rest <> '' LOOP
    part := regexp_match(rest, E'^[ \t\u00a0]*([0-9]+|[A-Za-zÄä]+|[./:,-])');
    IF part IS NULL OR length(shape) = 20 THEN
      RETURN NULL;
    END IF;
    word := part[1];
    rest := substr(rest, strpos(rest, word) + length(word));
    IF word ~ '^[0-9]' THEN
      IF length(word) > 4 THEN
        RETURN NULL;
      END IF;
      shape := shape || CASE WHEN length(word) > 2 THEN 'N' ELSE 'n' END;
      v := v || word::integer;
    ELSIF word ~ '^[./:,-]$' OR word = 'T' THEN
      shape := shape || word;
      v := v || 0;
    ELSE
      word := replace(lower(word), 'Ä', 'ä');
      found := CASE
        WHEN word IN ('januar', 'jan', 'january') THEN 1
        WHEN word IN ('februar', 'feb', 'february') THEN 2
        WHEN word IN ('märz', 'mrz', 'march', 'mar', 'mär') THEN 3
        WHEN word IN ('april', 'apr') THEN 4
        WHEN word IN ('mai', 'may') THEN 5
        WHEN word IN ('juni', 'jun', 'june') THEN 6
        WHEN word IN ('juli', 'jul', 'july') THEN 7
        WHEN word IN ('august', 'aug') THEN 8
        WHEN word IN ('september', 'sep') THEN 9
        WHEN word IN ('oktober', 'okt', 'october', 'oct') THEN 10
        WHEN word IN ('november', 'nov') THEN 11
        WHEN word IN ('dezember', 'dez', 'december', 'dec') THEN 12
      END;
      IF found IS NOT NULL THEN
        shape := shape || 'M';
      ELSIF word IN ('sonntag', 'so', 'montag', 'mo', 'dienstag', 'di', 'mittwoch', 'mi', 'donnerstag', 'do', 'freitag', 'fr',
                     'samstag', 'sa') THEN
        shape := shape || 'W';
      ELSIF word IN ('am', 'a', 'pm', 'p') THEN
        shape := shape || left(word, 1);
      ELSE
        RETURN NULL;
      END IF;
      v := v || coalesce(found, 0);
    END IF;
  END LOOP;
  IF shape = '' THEN
    RETURN NULL;
  END IF;

  WHILE at <= length(shape) LOOP
    IF NOT hastime AND substr(shape, at) ~ '^n[:ap]' THEN
      start := at;
      part := regexp_match(substr(shape, at), '^n((?::n){0,2})([ap]?)(:?)');
      ok := length(part[1]) = 4 OR part[2] <> '' OR part[3] = ''; -- a colon wants a number behind it
      hour := v[at];
      minute := CASE WHEN length(part[1]) >= 2 THEN v[at + 2] ELSE 0 END;
      second := CASE WHEN length(part[1]) = 4 THEN v[at + 4] ELSE 0 END;
      at := at + 1 + length(part[1] || part[2]);
      IF part[2] <> '' AND hour > 12 THEN
        ok := ok AND part[2] = 'p';
      ELSIF part[2] <> '' THEN
        hour := hour % 12 + CASE WHEN part[2] = 'p' THEN 12 ELSE 0 END;
      END IF;
      IF ok AND hour < 24 AND minute < 60 AND second < 60 THEN
        hastime := true;
        CONTINUE;
      END IF;
      hour := 0;
      minute := 0;
      second := 0;
      at := start;
    END IF;
    IF hasdate THEN
      RETURN NULL;
    END IF;
    IF substr(shape, at, 1) = 'W' THEN
      at := at + length(substring(substr(shape, at) FROM '^W(?:,,?|[.],?)?'));
    END IF;
    start := at;
    day := NULL;
    rest := substr(shape, at);
    IF rest ~ '^[nN]([./-])[nN]' THEN -- 22.11.2026, 22/11/26, 2026-11-22, and 22.11. of the year that runs
      word := substr(rest, 2, 1);
      IF substr(rest, 4, 1) = word AND substr(rest, 5) ~ '^[nN]([^:]|$)' THEN
        day := jetx_orderdate(left(rest, 5), v[at], v[at + 2], v[at + 4]);
        at := at + 5;
      ELSIF (substr(rest, 4, 1) <> word OR word = '.') AND rest ~ '^n.n' THEN
        at := at + CASE WHEN substr(rest, 4, 1) = word THEN 4 ELSE 3 END;
        day := coalesce(jetx_validday(thisyear, v[start + 2], v[start]), jetx_validday(thisyear, v[start], v[start + 2]));
      END IF;
    END IF;
    IF day IS NULL AND rest ~ '^n[.-]?M' THEN -- 22. November 2026, 22-Nov-26, and of the year that runs
      at := start + length(substring(rest FROM '^n[.-]?M'));
      found := v[at - 1];
      at := at + length(substring(substr(shape, at) FROM '^[.-]?'));
      IF substr(shape, at) ~ '^[nN]([^:]|$)' THEN
        day := jetx_validday(jetx_century(substr(shape, at, 1), v[at]), found, v[start]);
        at := at + 1;
      ELSE
        day := jetx_validday(thisyear, found, v[start]);
      END IF;
    END IF;
    IF day IS NULL AND rest ~ '^M[.]?(n,)?[nN]' THEN -- November 22, 2026 and November 2026
      at := start + length(substring(rest FROM '^M[.]?'));
      IF substr(shape, at) ~ '^n,[nN]' THEN
        day := jetx_validday(jetx_century(substr(shape, at + 2, 1), v[at + 2]), v[start], v[at]);
        at := at + 3;
      ELSIF substr(shape, at) !~ '^n,' THEN
        day := jetx_validday(jetx_century(substr(shape, at, 1), v[at]), v[start], 1);
        at := at + 1;
      END IF;
    END IF;
    IF day IS NULL THEN
      RETURN NULL;
    END IF;
    hasdate := true;
    IF substr(shape, at, 1) IN (',', 'T') THEN
      at := at + 1;
      IF at > length(shape) THEN
        RETURN NULL;
      END IF;
    END IF;
  END LOOP;
  RETURN jetx_moment(CASE WHEN hasdate THEN day ELSE 0 END, hour * 3600 + minute * 60 + second);
END $$;
