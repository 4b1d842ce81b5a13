# Writes the function library for PostgreSQL as a source, so that the program carries it: ${postgres_library}.
set(postgres_library "${CMAKE_CURRENT_BINARY_DIR}/PostgresLibrary.cpp")
set(scripts
  10-base.sql
  20-numbers.sql
  30-dates.sql
  40-conversions.sql
  45-calendar.sql
  50-arithmetic.sql
  60-texts.sql
  65-like.sql
  70-format.sql
  75-format.sql
  80-finance.sql
  85-aggregates.sql)
set(texts "")
foreach(script IN LISTS scripts)
  set(path "${CMAKE_CURRENT_LIST_DIR}/${script}")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${path}")
  file(READ "${path}" text)
  string(APPEND texts "        R\"sql(${text})sql\",\n")
endforeach()
configure_file("${CMAKE_CURRENT_LIST_DIR}/../PostgresLibrary.cpp.in" "${postgres_library}" @ONLY)
