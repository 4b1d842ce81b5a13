-- LIKE with a pattern that only the row tells. It becomes a regular expression in which case is written out, because the
-- store's collation cannot be used with one; of a set only the characters of the text itself are kept.

-- One character of a pattern or set in all its cases.
CREATE OR REPLACE FUNCTION jetx_samecase(one text, other text) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT one COLLATE "C" = other OR jetx_fold(one) COLLATE "C" = jetx_fold(other)
$$;

-- Whether a set such as "a-zß" holds a character; ranges follow the store's order.
CREATE OR REPLACE FUNCTION jetx_inset(one text, members text[]) RETURNS boolean
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  i integer := 1;
BEGIN
  WHILE i <= cardinality(members) LOOP
    IF members[i + 1] COLLATE "C" = '-' AND i + 2 <= cardinality(members) THEN
      IF one COLLATE merivane BETWEEN members[i] AND members[i + 2] THEN
        RETURN true;
      END IF;
      i := i + 3;
    ELSE
      IF jetx_samecase(one, members[i]) THEN
        RETURN true;
      END IF;
      i := i + 1;
    END IF;
  END LOOP;
  RETURN false;
END $$;

CREATE OR REPLACE FUNCTION jetx_checkset(members text[]) RETURNS void
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  i integer := 1;
BEGIN
  WHILE i <= cardinality(members) LOOP
    IF members[i + 1] COLLATE "C" = '-' AND i + 2 <= cardinality(members) THEN
      IF members[i] COLLATE merivane > members[i + 2] THEN
        PERFORM jetx_bad_pattern('Bereich läuft rückwärts');
      END IF;
      i := i + 3;
    ELSE
      i := i + 1;
    END IF;
  END LOOP;
END $$;

CREATE OR REPLACE FUNCTION jetx_escaped(one text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN one COLLATE "C" ~ '^[!-/:-@[-`{-~]$' THEN E'\\' || one ELSE one END
$$;

-- "ss" may stand as "ß" wherever it begins.
CREATE OR REPLACE FUNCTION jetx_runofs(count integer) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE count WHEN 1 THEN '[sS]' WHEN 3 THEN '(?:[sS](?:[sS][sS]|[ßẞ])|[ßẞ][sS])'
              ELSE repeat('(?:[sS][sS]|[ßẞ])', (count - CASE WHEN count % 2 = 1 THEN 3 ELSE 0 END) / 2) ||
                   CASE WHEN count % 2 = 1 THEN '(?:[sS](?:[sS][sS]|[ßẞ])|[ßẞ][sS])' ELSE '' END END
$$;

CREATE OR REPLACE FUNCTION jetx_likeexpression(source text, pattern text) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  p text[] := string_to_array(pattern, NULL);
  size CONSTANT integer := coalesce(cardinality(p), 0);
  c text COLLATE "C";
  result text COLLATE "C" := '^';
  i integer := 1;
  first integer;
  inverted boolean;
  members text[];
  held text COLLATE "C";
  upper text COLLATE "C";
  lower text COLLATE "C";
BEGIN
  WHILE i <= size LOOP
    c := p[i];
    i := i + 1;
    IF c = '*' THEN
      IF right(result, 2) <> '.*' THEN
        result := result || '.*';
      END IF;
    ELSIF c = '?' THEN
      result := result || '.';
    ELSIF c = '#' THEN
      result := result || '[0-9]';
    ELSIF c = '[' THEN
      inverted := p[i] COLLATE "C" = '!' AND i + 1 <= size AND p[i + 1] COLLATE "C" <> ']';
      IF inverted THEN
        i := i + 1;
      END IF;
      first := i;
      WHILE i <= size AND p[i] COLLATE "C" <> ']' LOOP
        i := i + 1;
      END LOOP;
      IF i > size THEN
        PERFORM jetx_bad_pattern('zu [ fehlt die schließende Klammer');
      END IF;
      members := p[first:i - 1];
      i := i + 1;
      PERFORM jetx_checkset(members);
      IF cardinality(members) > 0 THEN
        SELECT string_agg(DISTINCT jetx_escaped(one), '') INTO held
        FROM unnest(string_to_array(source, NULL)) AS u(one) WHERE jetx_inset(one, members);
        result := result || CASE WHEN held IS NOT NULL THEN CASE WHEN inverted THEN '[^' ELSE '[' END || held || ']'
                                 WHEN inverted THEN '.' ELSE '(?!)' END;
      END IF;
    ELSIF c IN ('s', 'S') THEN
      first := i - 1;
      WHILE i <= size AND p[i] COLLATE "C" IN ('s', 'S') LOOP
        i := i + 1;
      END LOOP;
      result := result || jetx_runofs(i - first);
    ELSIF c IN ('ß', 'ẞ') THEN
      result := result || '(?:[ßẞ]|[sS][sS])';
    ELSE
      upper := jet_ucase(c);
      lower := jetx_fold(c);
      result := result || CASE WHEN upper = lower THEN jetx_escaped(c) ELSE '[' || c || upper || lower || ']' END;
    END IF;
  END LOOP;
  RETURN result || '$';
END $$;

CREATE OR REPLACE FUNCTION jet_like(source text, pattern text) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT source COLLATE "C" ~ jetx_likeexpression(source, pattern)
$$;
CREATE OR REPLACE FUNCTION jet_alike(source text, pattern text) RETURNS boolean
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT jet_like(source, translate(regexp_replace(pattern COLLATE "C", '[*?#]', '[\&]', 'g'), '%_', '*?'))
$$;
