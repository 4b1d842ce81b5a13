-- The pieces of Format. A format is cut into marks, each a letter and its text: C for a character with a meaning of its
-- own, L for text that stands for itself; an empty L is something that is not shown. The shape has one character for
-- each mark, the character itself or E'\x01'. Formats and texts may be long: what walks along them has their characters
-- in an array and gathers the pieces of the result in one, since neither looking into a text nor appending to it is cheap.

CREATE OR REPLACE FUNCTION jetx_marks(format text) RETURNS text[]
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT coalesce(array_agg(CASE WHEN m[1] IS NOT NULL THEN 'L' || coalesce(nullif(m[1], ''), E'\\')
                                 WHEN m[2] IS NOT NULL THEN 'L' || m[2]
                                 WHEN m[3] = E'\x01' THEN 'L' || m[3]
                                 WHEN m[3] IS NOT NULL THEN 'C' || m[3]
                                 ELSE 'L' END ORDER BY place), '{}')
  FROM regexp_matches(format COLLATE "C",
         E'\\\\(.?)|"([^"]*)"?|\\*.?|\\[(?:Black|Blue|Green|Cyan|Red|Magenta|Yellow|White)\\]|([^\\\\"*])', 'gi')
       WITH ORDINALITY AS found(m, place)
$$;

CREATE OR REPLACE FUNCTION jetx_shape(marks text[]) RETURNS text
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT coalesce(string_agg(CASE WHEN mark COLLATE "C" ~ '^C' THEN substr(mark, 2) ELSE E'\x01' END, '' ORDER BY place), '')
  FROM unnest(marks) WITH ORDINALITY AS u(mark, place)
$$;

-- n number, d date, s text, l literal: what the first placeholder makes of a format.
CREATE OR REPLACE FUNCTION jetx_formatkind(shape text) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  first text COLLATE "C" := substring(lower(shape COLLATE "C") FROM '[0#%.,@&<>!dmyhnswqc]|ttttt|a(?:m/pm|/p|mpm)');
BEGIN
  RETURN CASE WHEN first IS NULL THEN 'l' WHEN strpos('0#%.,', first) > 0 THEN 'n' WHEN strpos('@&<>!', first) > 0 THEN 's'
              ELSE 'd' END;
END $$;

-- The section of that number, counted from 1; NULL when there is none, '{}' when it is empty. A fifth is ignored.
CREATE OR REPLACE FUNCTION jetx_section(marks text[], shape text, wanted integer) RETURNS text[]
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  parts text[] := string_to_array(shape COLLATE "C", ';');
  start integer := 1;
BEGIN
  IF shape = '' COLLATE "C" THEN
    RETURN CASE WHEN wanted = 1 THEN '{}'::text[] END;
  ELSIF wanted > cardinality(parts) THEN
    RETURN NULL;
  END IF;
  FOR i IN 1 .. wanted - 1 LOOP
    start := start + length(parts[i]) + 1;
  END LOOP;
  RETURN marks[start:start + length(parts[wanted]) - 1];
END $$;

CREATE OR REPLACE FUNCTION jetx_literal(marks text[]) RETURNS text
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$
  SELECT coalesce(string_agg(substr(mark, 2), '' ORDER BY place), '') FROM unnest(marks) WITH ORDINALITY AS u(mark, place)
$$;

CREATE OR REPLACE FUNCTION jetx_formattext(source text, marks text[], shape text) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  section text[] := jetx_section(marks, shape, 1);
  inside text COLLATE "C" := jetx_shape(section);
  letters text COLLATE "C" := source;
  places integer := length(inside) - length(translate(inside, '@&', ''));
  fromleft boolean := strpos(inside, '!') > 0;
  room integer := 0; -- places to pass over before the text
  at integer := 1;
  mark text COLLATE "C";
  chars text[];
  size integer;
  result text[] := '{}';
BEGIN
  IF source = '' COLLATE "C" THEN
    RETURN coalesce(jetx_literal(jetx_section(marks, shape, 2)), '');
  END IF;
  -- Both letters together leave the text as it is.
  letters := CASE WHEN (strpos(inside, '<') > 0) = (strpos(inside, '>') > 0) THEN source
                  WHEN strpos(inside, '<') > 0 THEN jet_lcase(source) ELSE jet_ucase(source) END;
  size := length(letters);
  IF NOT fromleft THEN
    room := greatest(0, places - size);
  ELSIF places > 0 THEN
    at := 1 + greatest(0, size - places);
  END IF;
  chars := string_to_array(substr(letters, at, places), NULL);
  size := cardinality(chars);
  places := 1;
  FOREACH mark IN ARRAY section LOOP
    IF mark IN ('C@', 'C&') THEN
      IF room = 0 AND places <= size THEN
        result := array_append(result, chars[places]);
        places := places + 1;
      ELSE
        room := greatest(room - 1, 0);
        IF mark = 'C@' THEN
          result := array_append(result, ' ');
        END IF;
      END IF;
    ELSIF mark NOT IN ('C!', 'C<', 'C>') THEN
      result := array_append(result, substr(mark, 2));
    END IF;
  END LOOP;
  RETURN array_to_string(result, '') || substr(letters, at + places - 1);
END $$;

CREATE OR REPLACE FUNCTION jetx_formatnumber(number numeric, marks text[], shape text) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  section text[] := jetx_section(marks, shape, 1);
  chosen text[];
  inside text[] COLLATE "C"; -- its characters, as in a shape
  following text COLLATE "C";
  ownsign boolean := true;
  n numeric := abs(number);
  -- What the section asks for.
  items text[] := '{}'; -- 0 # . E, or L and a text
  wholeplaces integer := 0;
  firstzero integer;
  decimals integer := 0;
  forced integer := 0;
  percents integer := 0;
  commas integer := 0;
  grouped boolean := false;
  pointseen boolean := false;
  expsign text COLLATE "C"; -- "E+", "e-", ...
  expdigits integer := 0;
  exponent integer := 0;
  c text COLLATE "C";
  i integer := 1;
  -- The digits.
  whole text COLLATE "C";
  fraction text COLLATE "C";
  place integer := 0;
  decimal integer := 0;
  power integer;
  result text[] := '{}';
BEGIN
  IF number = 0 THEN
    chosen := jetx_section(marks, shape, 3);
  ELSIF number < 0 THEN
    chosen := jetx_section(marks, shape, 2);
  END IF;
  IF chosen <> '{}' THEN
    section := chosen;
    ownsign := number = 0;
  END IF;
  IF section = '{}' THEN
    RETURN jetx_plain(number, ',', true);
  END IF;
  inside := string_to_array(jetx_shape(section), NULL);
  WHILE i <= cardinality(inside) LOOP
    c := inside[i];
    IF c IN ('0', '#') THEN
      items := array_append(items, c);
      IF pointseen THEN
        decimals := decimals + 1;
        IF c = '0' THEN
          forced := decimals;
        END IF;
      ELSE
        IF c = '0' AND firstzero IS NULL THEN
          firstzero := wholeplaces;
        END IF;
        wholeplaces := wholeplaces + 1;
        grouped := grouped OR commas > 0;
        commas := 0;
      END IF;
    ELSIF c = '.' AND NOT pointseen THEN
      items := array_append(items, c);
      pointseen := true;
    ELSIF c = ',' THEN
      IF NOT pointseen AND wholeplaces > 0 THEN
        commas := commas + 1;
      END IF;
    ELSIF c IN ('e', 'E') AND expsign IS NULL AND inside[i + 1] IN ('+', '-') THEN
      items := array_append(items, 'E');
      expsign := c || inside[i + 1];
      following := array_to_string(inside[i + 2:], ''); -- once, since there is one exponent
      expdigits := least(12, length(substring(following FROM '^0*')));
      i := i + 1 + length(substring(following FROM '^0*[0#]*'));
    ELSE
      IF c = '%' THEN
        percents := percents + 1;
      END IF;
      items := array_append(items, 'L' || substr(section[i], 2));
    END IF;
    i := i + 1;
  END LOOP;

  n := n * ('1e' || (2 * percents - 3 * commas))::numeric;
  IF expsign IS NULL THEN
    n := round(n, decimals);
  ELSIF n <> 0 THEN
    power := CASE WHEN n >= 1 THEN length(trunc(n)::text)
                  ELSE length(ltrim(substr(trim_scale(n)::text, 3), '0')) - scale(trim_scale(n)) END;
    exponent := power - wholeplaces;
    n := round(n * ('1e' || -exponent)::numeric, decimals);
    IF n >= ('1e' || wholeplaces)::numeric THEN -- 9,99 became 10,0
      n := n / 10;
      exponent := exponent + 1;
    END IF;
  END IF;
  n := trim_scale(n);
  chosen := jetx_section(marks, shape, 3);
  IF n = 0 AND number <> 0 AND wholeplaces + decimals > 0 AND chosen <> '{}' THEN -- shown as zero it counts as one
    RETURN jetx_formatnumber(abs(number), chosen, jetx_shape(chosen));
  END IF;
  whole := CASE WHEN n >= 1 THEN trunc(n)::text ELSE '' END;
  fraction := CASE WHEN scale(n) > 0 THEN right(n::text, scale(n)) ELSE '' END;

  IF number < 0 AND ownsign AND (n <> 0 OR wholeplaces + decimals = 0) THEN
    result := '{-}';
  END IF;
  pointseen := false;
  FOREACH c IN ARRAY items LOOP
    IF c IN ('0', '#') AND pointseen THEN
      decimal := decimal + 1;
      IF c = '0' OR decimal <= forced OR decimal <= length(fraction) THEN
        result := array_append(result, coalesce(nullif(substr(fraction, decimal, 1), ''), '0'));
      END IF;
    ELSIF c IN ('0', '#') OR c = '.' AND wholeplaces = 0 AND decimals > 0 THEN
      -- With the first place come the digits that have none.
      FOR p IN REVERSE CASE WHEN place = 0 THEN greatest(length(whole), wholeplaces) - 1 ELSE wholeplaces - 1 - place END
               .. CASE WHEN c = '.' THEN 0 ELSE wholeplaces - 1 - place END LOOP
        IF p >= wholeplaces OR p < length(whole) OR place >= firstzero THEN
          result := array_append(result, coalesce(nullif(substr(whole, greatest(length(whole) - p, 0),
                                                                CASE WHEN p < length(whole) THEN 1 ELSE 0 END), ''), '0'));
          IF grouped AND p > 0 AND p % 3 = 0 THEN
            result := array_append(result, '.');
          END IF;
        END IF;
      END LOOP;
      place := place + 1;
    ELSIF c = 'E' THEN
      result := array_append(result, left(expsign, 1) ||
                             CASE WHEN exponent < 0 THEN '-' WHEN expsign ~ '[+]$' THEN '+' ELSE '' END ||
                             lpad(abs(exponent)::text, greatest(expdigits, length(abs(exponent)::text)), '0'));
    END IF;
    IF c = '.' THEN
      pointseen := true;
      result := array_append(result, ',');
    ELSIF left(c, 1) = 'L' THEN
      result := array_append(result, substr(c, 2));
    END IF;
  END LOOP;
  RETURN array_to_string(result, '');
END $$;

-- Without marks the shape stands for itself.
CREATE OR REPLACE FUNCTION jetx_formatdate(days double precision, marks text[], shape text, firstday bigint, firstweek bigint)
RETURNS text LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $$
DECLARE
  months CONSTANT text[] := '{Januar,Februar,März,April,Mai,Juni,Juli,August,September,Oktober,November,Dezember}';
  shortmonths CONSTANT text[] := '{Jan,Feb,Mrz,Apr,Mai,Jun,Jul,Aug,Sep,Okt,Nov,Dez}';
  weekdays CONSTANT text[] := '{Sonntag,Montag,Dienstag,Mittwoch,Donnerstag,Freitag,Samstag}';
  low CONSTANT text COLLATE "C" := lower(shape COLLATE "C");
  written CONSTANT text[] := string_to_array(shape, NULL);
  daynumber integer;
  seconds integer;
  day integer;
  month integer;
  year integer;
  weekday text COLLATE "C";
  twelve boolean := low ~ 'a(m/pm|/p|mpm)';
  hour integer;
  behindhour boolean := false; -- "m" means minutes now
  behind boolean;
  token text COLLATE "C";
  c text COLLATE "C";
  run integer;
  i integer := 1;
  result text[] := '{}';
BEGIN
  IF NOT jetx_isdate(days) THEN
    RETURN '';
  END IF;
  daynumber := jetx_day(days);
  seconds := jetx_second(days);
  day := extract(day FROM jetx_calendar(daynumber));
  month := extract(month FROM jetx_calendar(daynumber));
  year := extract(year FROM jetx_calendar(daynumber));
  weekday := weekdays[jetx_weekday(daynumber, 1)];
  FOR token IN SELECT m[1] FROM regexp_matches(low,
      E'(d{1,6}|m{1,4}|hh?|nn?|ss?|ww?|yyyy|yy?|ttttt|am/pm|a/p|ampm|(?:.|\n))', 'g') AS m LOOP
    c := left(token, 1);
    EXIT WHEN c = ';';
    behind := behindhour;
    run := length(token);
    IF c IN ('d', 'm', 'y', 'n', 's', 'w', 'q', 'c', 't') THEN
      behindhour := false;
    END IF;
    result := array_append(result, CASE c
      WHEN 'd' THEN CASE run WHEN 1 THEN day::text
                             WHEN 2 THEN lpad(day::text, 2, '0')
                             WHEN 3 THEN left(weekday, 2)
                             WHEN 4 THEN weekday
                             WHEN 5 THEN jetx_daytext(daynumber)
                             ELSE weekday || ', ' || day || '. ' || months[month] || ' ' || lpad(year::text, 4, '0') END
      WHEN 'm' THEN CASE WHEN run > 3 THEN months[month]
                         WHEN run = 3 THEN shortmonths[month]
                         ELSE lpad(CASE WHEN behind THEN (seconds / 60 % 60)::text ELSE month::text END,
                                   greatest(run, length(CASE WHEN behind THEN (seconds / 60 % 60)::text ELSE month::text END)),
                                   '0') END
      WHEN 'y' THEN CASE run WHEN 4 THEN lpad(year::text, 4, '0')
                             WHEN 2 THEN lpad((year % 100)::text, 2, '0')
                             ELSE (daynumber - jetx_civil(year, 1, 1) + 1)::text END
      WHEN 'n' THEN lpad((seconds / 60 % 60)::text, greatest(run, length((seconds / 60 % 60)::text)), '0')
      WHEN 's' THEN lpad((seconds % 60)::text, greatest(run, length((seconds % 60)::text)), '0')
      WHEN 'w' THEN CASE run WHEN 2 THEN jetx_week(daynumber, firstday, firstweek)::text
                             ELSE jetx_weekday(daynumber, CASE WHEN firstday BETWEEN 1 AND 7 THEN firstday ELSE 2 END::integer)::text END
      WHEN 'q' THEN ((month + 2) / 3)::text
      WHEN 'c' THEN jetx_datetext(days)
      WHEN 't' THEN CASE run WHEN 5 THEN jetx_clock(seconds) ELSE written[i] END
      WHEN '/' THEN '.'
      ELSE '' END);
    IF c = 'h' THEN
      hour := seconds / 3600;
      IF twelve THEN
        hour := (hour + 11) % 12 + 1;
      END IF;
      result := array_append(result, lpad(hour::text, greatest(run, length(hour::text)), '0'));
      behindhour := true;
    ELSIF c = 'a' AND run > 1 THEN -- the case of the first letter tells that of the mark
      IF token <> 'ampm' THEN -- German has no words for the system's
        c := CASE WHEN seconds < 43200 THEN 'am' ELSE 'pm' END;
        IF run = 3 THEN
          c := left(c, 1);
        END IF;
        result := array_append(result, CASE WHEN written[i] COLLATE "C" = 'A' THEN upper(c) ELSE c END);
      END IF;
    ELSIF c NOT IN ('d', 'm', 'y', 'n', 's', 'w', 'q', 'c', 't', '/') THEN
      result := array_append(result, CASE WHEN marks IS NULL THEN written[i] ELSE substr(marks[i], 2) END);
    END IF;
    i := i + run;
  END LOOP;
  RETURN array_to_string(result, '');
END $$;
