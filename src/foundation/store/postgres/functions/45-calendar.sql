-- Date functions. Days of the week count from 1, Sunday, as firstday; 0 is Monday.

CREATE OR REPLACE FUNCTION jet_year(days double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT extract(year FROM jetx_calendar(jetx_day(days)))::bigint $$;
CREATE OR REPLACE FUNCTION jet_month(days double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT extract(month FROM jetx_calendar(jetx_day(days)))::bigint $$;
CREATE OR REPLACE FUNCTION jet_day(days double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT extract(day FROM jetx_calendar(jetx_day(days)))::bigint $$;
CREATE OR REPLACE FUNCTION jet_hour(days double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_second(days)::bigint / 3600 $$;
CREATE OR REPLACE FUNCTION jet_minute(days double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_second(days)::bigint / 60 % 60 $$;
CREATE OR REPLACE FUNCTION jet_second(days double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT jetx_second(days)::bigint % 60 $$;

CREATE OR REPLACE FUNCTION jetx_checkedday(firstday bigint) RETURNS integer
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN firstday = 0 THEN 2 WHEN firstday BETWEEN 1 AND 7 THEN firstday::integer
              ELSE jet_fail(5, firstday)::integer END
$$;
-- 1 to 7; the first day is one of these.
CREATE OR REPLACE FUNCTION jetx_weekday(day integer, firstday integer) RETURNS integer
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ SELECT (day + 658147 - firstday) % 7 + 1 $$;
CREATE OR REPLACE FUNCTION jet_weekday(days double precision, firstday bigint DEFAULT 1) RETURNS bigint
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$ 
  SELECT CASE WHEN firstday NOT BETWEEN 0 AND 7 THEN jet_fail(5, days + firstday)::bigint
              ELSE jetx_weekday(jetx_day(days), CASE firstday WHEN 0 THEN 2 ELSE firstday::integer END)::bigint END
 $$;

-- First day of week 1.
CREATE OR REPLACE FUNCTION jetx_firstweek(year integer, firstday integer, rule integer) RETURNS integer
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  first integer := jetx_civil(year, 1, 1);
  before integer := jetx_weekday(first, firstday) - 1;
BEGIN
  IF rule = 2 AND before > 3 OR rule = 3 AND before > 0 THEN
    RETURN first + 7 - before;
  END IF;
  RETURN first - before;
END $$;
-- The last days of a year may belong to week 1.
CREATE OR REPLACE FUNCTION jetx_week(day integer, firstday bigint, firstweek bigint) RETURNS integer
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  firstof integer := CASE WHEN firstday BETWEEN 1 AND 7 THEN firstday ELSE 2 END;
  rule integer := CASE WHEN firstweek BETWEEN 1 AND 3 THEN firstweek ELSE 2 END;
  year integer := extract(year FROM jetx_calendar(day));
  start integer := jetx_firstweek(year, firstof, rule);
  next integer;
BEGIN
  IF day < start THEN
    start := jetx_firstweek(year - 1, firstof, rule);
  ELSIF rule = 2 THEN
    next := jetx_firstweek(year + 1, firstof, rule);
    IF day >= next THEN
      start := next;
    END IF;
  END IF;
  RETURN (day - start) / 7 + 1;
END $$;

CREATE OR REPLACE FUNCTION jet_monthname(month bigint, short bigint DEFAULT 0) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN short IS NULL THEN NULL
              WHEN month NOT BETWEEN 1 AND 12 THEN jet_fail(5, month)
              WHEN short <> 0 THEN ('{Jan,Feb,Mrz,Apr,Mai,Jun,Jul,Aug,Sep,Okt,Nov,Dez}'::text[])[month]
              ELSE ('{Januar,Februar,März,April,Mai,Juni,Juli,August,September,Oktober,November,Dezember}'::text[])[month] END
$$;
CREATE OR REPLACE FUNCTION jet_weekdayname(weekday bigint, short bigint DEFAULT 0, firstday bigint DEFAULT 0) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  place integer;
BEGIN
  IF weekday NOT BETWEEN 1 AND 7 THEN
    PERFORM jet_fail(5, weekday);
  END IF;
  place := (weekday + jetx_checkedday(firstday) - 2) % 7 + 1;
  RETURN CASE WHEN short <> 0 THEN ('{So,Mo,Di,Mi,Do,Fr,Sa}'::text[])[place]
              ELSE ('{Sonntag,Montag,Dienstag,Mittwoch,Donnerstag,Freitag,Samstag}'::text[])[place] END;
END $$;

CREATE OR REPLACE FUNCTION jet_dateserial(year bigint, month bigint, day bigint) RETURNS double precision
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$ SELECT jetx_parts(year, month, day, 0) $$;
CREATE OR REPLACE FUNCTION jet_timeserial(hour bigint, minute bigint, second bigint) RETURNS double precision
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE AS $$ SELECT jetx_parts(1899, 12, 30, hour * 3600 + minute * 60 + second) $$;

-- The day and the time of what CDate makes of a value; Null stays Null.
DO $$
DECLARE
  kind text;
BEGIN
  FOREACH kind IN ARRAY ARRAY['boolean', 'bigint', 'double precision', 'numeric', 'jet_date', 'text'] LOOP
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_datevalue(x %s) RETURNS double precision LANGUAGE sql STABLE PARALLEL SAFE '
                   'AS ''SELECT jetx_day(jet_todate(x))::double precision''', kind);
    EXECUTE format('CREATE OR REPLACE FUNCTION jet_timevalue(x %s) RETURNS double precision LANGUAGE sql STABLE PARALLEL SAFE '
                   'AS ''SELECT jetx_second(jet_todate(x)) / 86400::double precision''', kind);
  END LOOP;
END $$;

CREATE OR REPLACE FUNCTION jetx_interval(name text) RETURNS text
LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
  SELECT CASE WHEN lower(name COLLATE "C") IN ('yyyy', 'q', 'm', 'y', 'd', 'w', 'ww', 'h', 'n', 's')
              THEN lower(name COLLATE "C") ELSE jet_fail(5, name) END
$$;

CREATE OR REPLACE FUNCTION jet_dateadd(name text, number double precision, days double precision) RETURNS double precision
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  unit text COLLATE "C" := jetx_interval(name);
  day integer := jetx_day(days);
  second bigint := jetx_second(days);
  count numeric := round(number);
  months bigint;
BEGIN
  IF abs(count) >= 4e11 THEN
    PERFORM jet_fail(5, number);
  END IF;
  IF unit IN ('yyyy', 'q', 'm') THEN
    months := count * CASE unit WHEN 'yyyy' THEN 12 WHEN 'q' THEN 3 ELSE 1 END;
    IF abs(months) > 200000 THEN
      PERFORM jet_fail(5, number);
    END IF;
    -- A day that the month does not have becomes its last one.
    months := months + jet_year(day) * 12 + jet_month(day) - 1;
    RETURN jetx_moment(least(jetx_civil(0, months + 1, jet_day(day)), jetx_civil(0, months + 2, 0)), second);
  END IF;
  count := count * CASE unit WHEN 'h' THEN 3600 WHEN 'n' THEN 60 WHEN 's' THEN 1 WHEN 'ww' THEN 604800 ELSE 86400 END + second;
  RETURN jetx_moment(day + floor(count / 86400)::bigint, (count - floor(count / 86400) * 86400)::bigint);
END $$;

CREATE OR REPLACE FUNCTION jet_datediff(name text, first double precision, second double precision,
                                        firstday bigint DEFAULT 1, firstweek bigint DEFAULT 1) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  unit text COLLATE "C" := jetx_interval(name);
  a integer;
  b integer;
  step integer;
BEGIN
  IF firstweek NOT BETWEEN 0 AND 3 THEN
    PERFORM jet_fail(5, firstweek);
  END IF;
  a := jetx_day(first);
  b := jetx_day(second);
  IF unit IN ('d', 'y') THEN
    RETURN b - a;
  ELSIF unit = 'yyyy' THEN
    RETURN jet_year(b) - jet_year(a);
  ELSIF unit = 'q' THEN
    RETURN (jet_year(b) - jet_year(a)) * 4 + (jet_month(b) - 1) / 3 - (jet_month(a) - 1) / 3;
  ELSIF unit = 'm' THEN
    RETURN (jet_year(b) - jet_year(a)) * 12 + jet_month(b) - jet_month(a);
  ELSIF unit = 'w' THEN
    RETURN (b - a) / 7;
  ELSIF unit = 'ww' THEN
    step := jetx_checkedday(firstday);
    RETURN (b - a + jetx_weekday(a, step) - jetx_weekday(b, step)) / 7;
  END IF;
  step := CASE unit WHEN 'h' THEN 3600 WHEN 'n' THEN 60 ELSE 1 END;
  RETURN (b - a) * (86400 / step)::bigint + jetx_second(second) / step - jetx_second(first) / step;
END $$;

CREATE OR REPLACE FUNCTION jet_datepart(name text, days double precision, firstday bigint DEFAULT 1,
                                        firstweek bigint DEFAULT 1) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT PARALLEL SAFE AS $$
DECLARE
  unit text COLLATE "C" := jetx_interval(name);
  day integer := jetx_day(days);
BEGIN
  IF unit = 'ww' AND firstweek NOT BETWEEN 0 AND 3 THEN
    PERFORM jet_fail(5, firstweek);
  END IF;
  RETURN CASE unit WHEN 'yyyy' THEN jet_year(day)
                   WHEN 'q' THEN (jet_month(day) + 2) / 3
                   WHEN 'm' THEN jet_month(day)
                   WHEN 'y' THEN day - jetx_civil(jet_year(day), 1, 1) + 1
                   WHEN 'd' THEN jet_day(day)
                   WHEN 'w' THEN jetx_weekday(day, jetx_checkedday(firstday))
                   WHEN 'ww' THEN jetx_week(day, jetx_checkedday(firstday), firstweek)
                   WHEN 'h' THEN jet_hour(days)
                   WHEN 'n' THEN jet_minute(days)
                   ELSE jet_second(days) END;
END $$;
