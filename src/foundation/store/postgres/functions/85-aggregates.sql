-- StDev, StDevP, Var and VarP of the sorted values of a group, in the steps in which a file computes them.

CREATE OR REPLACE FUNCTION jetx_square(x double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT CASE WHEN abs(x) < 1e-150 THEN 0 ELSE x * x END $$;

CREATE OR REPLACE FUNCTION jetx_spread(sorted double precision[], population boolean) RETURNS double precision
LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE AS $$
DECLARE
  x double precision;
  count double precision := coalesce(cardinality(sorted) - cardinality(array_positions(sorted, NULL)), 0);
  divisor double precision := CASE WHEN population THEN count ELSE count - 1 END;
  least CONSTANT double precision := sorted[1]; -- Null sorts to the end
  above double precision := 0;
  mean double precision;
  distances double precision := 0;
  squares double precision := 0;
BEGIN
  IF divisor < 1 THEN
    RETURN NULL;
  END IF;
  FOREACH x IN ARRAY sorted LOOP
    EXIT WHEN x IS NULL;
    above := above + (x - least);
  END LOOP;
  mean := least + above / count;
  FOREACH x IN ARRAY sorted LOOP
    EXIT WHEN x IS NULL;
    distances := distances + (x - mean);
    squares := squares + jetx_square(x - mean);
  END LOOP;
  RETURN greatest(0, squares - jetx_square(distances) / count) / divisor;
END $$;

CREATE OR REPLACE FUNCTION jet_var(sorted double precision[]) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_spread(sorted, false) $$;
CREATE OR REPLACE FUNCTION jet_varp(sorted double precision[]) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_spread(sorted, true) $$;
CREATE OR REPLACE FUNCTION jet_stdev(sorted double precision[]) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT sqrt(jetx_spread(sorted, false)) $$;
CREATE OR REPLACE FUNCTION jet_stdevp(sorted double precision[]) RETURNS double precision
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT sqrt(jetx_spread(sorted, true)) $$;
