-- Depreciation and annuities. What leaves the range of a double raises 5; the server would raise errors of its own, which
-- only a block of its own can catch, and that may not run in parallel.

CREATE OR REPLACE FUNCTION jet_sln(cost double precision, salvage double precision, life double precision)
RETURNS double precision LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL UNSAFE AS $$
BEGIN
  IF life = 0 THEN
    PERFORM jet_fail(11, cost);
  END IF;
  BEGIN
    RETURN (cost - salvage) / life;
  EXCEPTION WHEN numeric_value_out_of_range THEN
    PERFORM jet_fail(5, cost);
  END;
END $$;

CREATE OR REPLACE FUNCTION jet_syd(cost double precision, salvage double precision, life double precision,
                                   period double precision)
RETURNS double precision LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL UNSAFE AS $$
BEGIN
  IF life <= 0 OR period < 1 OR period > life OR salvage < 0 THEN
    PERFORM jet_fail(5, cost);
  END IF;
  BEGIN
    RETURN (cost - salvage) * (life - period + 1) * 2 / (life * (life + 1));
  EXCEPTION WHEN numeric_value_out_of_range THEN
    PERFORM jet_fail(5, cost);
  END;
END $$;

CREATE OR REPLACE FUNCTION jet_ddb(cost double precision, salvage double precision, life double precision,
                                   period double precision, factor double precision DEFAULT 2)
RETURNS double precision LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL UNSAFE AS $$
DECLARE
  value double precision;
BEGIN
  IF cost < 0 OR salvage < 0 OR life <= 0 OR period < 1 OR period > life OR factor <= 0 THEN
    PERFORM jet_fail(5, cost);
  END IF;
  BEGIN
    value := cost * jet_power(greatest(0, 1 - factor / life), period - 1);
    RETURN greatest(0, least(value * least(1, factor / life), value - salvage));
  EXCEPTION WHEN numeric_value_out_of_range THEN
    PERFORM jet_fail(5, cost);
  END;
END $$;

-- pv, fv and pmt by one another: rate per period, periods, the two other amounts, not 0 when paid in advance.
CREATE OR REPLACE FUNCTION jetx_annuity(wanted text, rate double precision, periods double precision, a double precision,
                                        b double precision, due double precision)
RETURNS double precision LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL UNSAFE AS $$
DECLARE
  growth double precision;
  advance double precision;
BEGIN
  IF wanted = 'pmt' COLLATE "C" AND periods = 0 THEN
    PERFORM jet_fail(5, rate);
  END IF;
  BEGIN
    IF rate = 0 THEN
      RETURN CASE WHEN wanted = 'pmt' COLLATE "C" THEN -(a + b) / periods ELSE -b - a * periods END;
    END IF;
    growth := CASE WHEN rate > -1 AND periods * ln(1 + rate) < -745.1333 THEN 0 ELSE power(1 + rate, periods) END;
    advance := CASE WHEN due <> 0 THEN 1 + rate ELSE 1 END;
    RETURN CASE wanted COLLATE "C"
      WHEN 'fv' THEN -b * growth - a * advance * (growth - 1) / rate
      WHEN 'pv' THEN -(b + a * advance * (growth - 1) / rate) / growth
      ELSE -(b + a * growth) * rate / (advance * (growth - 1)) END;
  EXCEPTION WHEN data_exception THEN -- out of range, division by zero, a power that is no number
    PERFORM jet_fail(5, rate);
  END;
END $$;
CREATE OR REPLACE FUNCTION jet_fv(rate double precision, periods double precision, payment double precision,
                                  pv double precision DEFAULT 0, due double precision DEFAULT 0)
RETURNS double precision LANGUAGE sql IMMUTABLE STRICT PARALLEL UNSAFE AS $$
  SELECT jetx_annuity('fv', rate, periods, payment, pv, due)
$$;
CREATE OR REPLACE FUNCTION jet_pv(rate double precision, periods double precision, payment double precision,
                                  fv double precision DEFAULT 0, due double precision DEFAULT 0)
RETURNS double precision LANGUAGE sql IMMUTABLE STRICT PARALLEL UNSAFE AS $$
  SELECT jetx_annuity('pv', rate, periods, payment, fv, due)
$$;
CREATE OR REPLACE FUNCTION jet_pmt(rate double precision, periods double precision, pv double precision,
                                   fv double precision DEFAULT 0, due double precision DEFAULT 0)
RETURNS double precision LANGUAGE sql IMMUTABLE STRICT PARALLEL UNSAFE AS $$
  SELECT jetx_annuity('pmt', rate, periods, pv, fv, due)
$$;

CREATE OR REPLACE FUNCTION jet_nper(rate double precision, payment double precision, pv double precision,
                                    fv double precision DEFAULT 0, due double precision DEFAULT 0)
RETURNS double precision LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL UNSAFE AS $$
DECLARE
  pay double precision;
  ratio double precision;
BEGIN
  pay := payment * CASE WHEN due <> 0 THEN 1 + rate ELSE 1 END;
  IF rate = 0 THEN
    RETURN -(pv + fv) / payment;
  END IF;
  ratio := (pay - fv * rate) / (pay + pv * rate);
  IF rate = -1 AND ratio > 0 THEN
    RETURN 0;
  ELSIF 1 + rate = 1 THEN
    RETURN ln(ratio) / rate;
  END IF;
  RETURN ln(ratio) / (ln(1 + rate) * (rate / (1 + rate - 1))); -- exact for small rates too
EXCEPTION WHEN data_exception THEN
  PERFORM jet_fail(5, rate);
END $$;
