-- Format, for a value that is given as its kind (b i d f c t s), its plain text (of a date anything but Null), its number
-- and its days where it has them.
CREATE OR REPLACE FUNCTION jetx_format(kind text, plain text, number numeric, days double precision, format text,
                                       firstday bigint, firstweek bigint) RETURNS text
LANGUAGE plpgsql STABLE PARALLEL SAFE AS $$
DECLARE
  f text COLLATE "C" := coalesce(format, '');
  pattern text COLLATE "C";
  k CONSTANT text COLLATE "C" := kind;
  n numeric := number;
  finite boolean := true;
  d double precision := days;
  x double precision;
  parsed jetx_number;
  marks text[];
  shape text COLLATE "C";
  sort text COLLATE "C";
  quick text COLLATE "C";
  yes text;
  no text;
BEGIN
  IF f = '' OR plain IS NULL AND f ~ '^[A-Za-z]' AND jetx_named(f) IS NOT NULL THEN
    RETURN coalesce(CASE WHEN k = 't' THEN jetx_datetext(d) ELSE plain END, '');
  END IF;
  -- Most formats of money and quantities.
  IF k IN ('i', 'd', 'f', 'c') AND plain IS NOT NULL AND f ~ '^#*(#,##)?0([.]0+)?$' THEN
    quick := translate(round(n, CASE WHEN strpos(f, '.') > 0 THEN length(f) - strpos(f, '.') ELSE 0 END)::text, '.', ',');
    IF strpos(f, ',') > 0 AND quick ~ '[0-9]{4}' THEN
      quick := reverse(regexp_replace(reverse(split_part(quick, ',', 1)), '([0-9]{3})(?=[0-9])', '\1.', 'g')) ||
               CASE WHEN strpos(quick, ',') > 0 THEN substr(quick, strpos(quick, ',')) ELSE '' END;
    END IF;
    RETURN quick;
  END IF;
  pattern := CASE WHEN f ~ '^[A-Za-z]' THEN jetx_named(f) END;
  shape := coalesce(pattern, f);
  IF shape ~ E'[\\\\"*[\x01]' THEN
    marks := jetx_marks(shape);
    shape := jetx_shape(marks);
  END IF;
  sort := jetx_formatkind(shape);
  IF marks IS NULL AND sort <> 'd' THEN
    marks := jetx_marks(shape);
  END IF;
  IF plain IS NULL THEN
    IF sort = 's' THEN
      RETURN jetx_formattext('', marks, shape);
    ELSIF sort = 'd' THEN
      RETURN '';
    END IF;
    RETURN coalesce(jetx_literal(jetx_section(marks, shape, 4)), '');
  END IF;
  IF sort = 's' AND pattern IS NULL THEN
    RETURN jetx_formattext(CASE WHEN k = 't' THEN jetx_datetext(d) ELSE plain END, marks, shape);
  END IF;
  IF k = 's' THEN
    parsed := jetx_parse(plain);
    IF parsed.bits THEN
      parsed.value := jetx_signed(parsed.value, CASE WHEN parsed.value >= 4294967296 THEN 64 ELSE 32 END);
    END IF;
    IF parsed.value IS NULL OR sort = 'd' OR pattern ~ '^:' THEN
      d := jetx_parsedate(plain);
    END IF;
    x := jetx_double(parsed.value);
    finite := coalesce(abs(x) < 'Infinity', true);
    n := CASE WHEN parsed.value IS NULL THEN d::numeric WHEN finite THEN x::numeric END;
  ELSIF k = 'd' AND abs(d) = 'Infinity' THEN
    finite := false;
  END IF;
  IF pattern ~ '^:' THEN
    IF pattern = ':number' THEN
      RETURN CASE WHEN k IN ('c', 'f', 'i') OR n IS NULL AND finite THEN plain WHEN finite THEN jetx_doubletext(n::double precision)
                  ELSE CASE WHEN coalesce(x, d) < 0 THEN '-1,#INF' ELSE '1,#INF' END END;
    ELSIF pattern <> ':date' THEN
      yes := CASE pattern WHEN ':yesno' THEN 'Ja' WHEN ':truefalse' THEN 'Wahr' ELSE 'Ein' END;
      no := CASE pattern WHEN ':yesno' THEN 'Nein' WHEN ':truefalse' THEN 'Falsch' ELSE 'Aus' END;
      IF k = 's' AND (parsed.value IS NULL OR NOT finite) AND lower(plain COLLATE "C") IN ('wahr', 'falsch') THEN
        RETURN CASE WHEN lower(plain COLLATE "C") = 'wahr' THEN yes ELSE no END;
      END IF;
      RETURN CASE WHEN n IS NULL AND finite THEN plain WHEN n = 0 THEN no ELSE yes END;
    END IF;
    marks := '{Cc}';
    shape := 'c';
    sort := 'd';
  END IF;
  IF sort = 'd' OR sort = 'l' AND k = 't' THEN
    IF k <> 't' AND d IS NULL OR k IN ('b', 'i', 'd', 'f', 'c') THEN
      d := jetx_double(n);
      IF d IS NULL OR NOT jetx_isdate(d) THEN
        RETURN plain;
      END IF;
    END IF;
    RETURN jetx_formatdate(d, marks, shape, CASE WHEN pattern IS NULL THEN firstday ELSE 1 END,
                           CASE WHEN pattern IS NULL THEN firstweek ELSE 1 END);
  END IF;
  RETURN CASE WHEN n IS NULL OR NOT finite THEN plain ELSE jetx_formatnumber(n, marks, shape) END;
END $$;

-- The pattern of a named format; those that are no pattern begin with a colon.
CREATE OR REPLACE FUNCTION jetx_named(name text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE lower(name COLLATE "C")
    WHEN 'general number' THEN ':number' WHEN 'currency' THEN '#,##0.00 €' WHEN 'euro' THEN '#,##0.00 €'
    WHEN 'fixed' THEN '0.00' WHEN 'standard' THEN '#,##0.00' WHEN 'percent' THEN '0.00%'
    WHEN 'scientific' THEN '0.00E+00' WHEN 'yes/no' THEN ':yesno' WHEN 'true/false' THEN ':truefalse'
    WHEN 'on/off' THEN ':onoff' WHEN 'general date' THEN ':date' WHEN 'long date' THEN 'dddddd'
    WHEN 'medium date' THEN 'dd-mmm-yy' WHEN 'short date' THEN 'ddddd' WHEN 'long time' THEN 'ttttt'
    WHEN 'medium time' THEN 'hh:nn AM/PM' WHEN 'short time' THEN 'hh:nn' END
$$;

DO $$
DECLARE
  kind text[];
BEGIN
  FOREACH kind SLICE 1 IN ARRAY ARRAY[
      ['boolean', 'b', 'x::integer::numeric * -1', 'NULL'], ['bigint', 'i', 'x::numeric', 'NULL'],
      ['real', 'f', 'jetx_seven(x)', 'x::double precision'],
      ['double precision', 'd', 'CASE WHEN abs(x) < ''Infinity'' THEN x::numeric END', 'x'], ['numeric', 'c', 'x', 'NULL'],
      ['jet_date', 't', '(x).days::numeric', '(x).days'], ['text', 's', 'NULL', 'NULL']] LOOP
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_format(x %s, format text DEFAULT NULL, firstday bigint DEFAULT 1, '
                   'firstweek bigint DEFAULT 1) RETURNS text LANGUAGE sql STABLE PARALLEL SAFE AS %L', kind[1],
                   format('SELECT jetx_format(%L, %s, %s, %s, format, coalesce(firstday, 1), coalesce(firstweek, 1))',
                          kind[2], CASE kind[2] WHEN 't' THEN 'CASE WHEN (x).days IS NOT NULL THEN '''' END' ELSE 'jet_totext(x)' END,
                          kind[3], kind[4]));
  END LOOP;
END $$;
