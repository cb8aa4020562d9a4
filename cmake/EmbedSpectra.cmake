# Writes the published spectra of data/*.csv as C++ tables; run at build time:
#   cmake -DDATA=<folder of the CSVs> -DOUTPUT=<file.cpp> -P EmbedSpectra.cmake
# A file whose header, wavelengths, rows, columns or numbers are not as stated below stops the build.

# table(name file columns first_nm last_nm step_nm)
function(table name file columns first_nm last_nm step_nm)
  file(STRINGS "${DATA}/${file}" lines)
  list(POP_FRONT lines header)
  if(NOT header MATCHES "^wavelength_nm,")
    message(FATAL_ERROR "${file}: the header does not begin with wavelength_nm")
  endif()

  set(nm ${first_nm})
  set(wavelengths "")
  set(values "")
  foreach(line IN LISTS lines)
    string(REPLACE "," ";" row "${line}")
    list(LENGTH row count)
    list(POP_FRONT row wavelength)
    math(EXPR found "${count} - 1")
    if(NOT wavelength STREQUAL nm OR NOT found EQUAL columns)
      message(FATAL_ERROR "${file}: expected ${nm} nm and ${columns} values, found \"${line}\"")
    endif()
    foreach(value IN LISTS row)
      if(NOT value MATCHES "^(0|[1-9][0-9]*)(\\.[0-9]+)?([eE][-+]?[0-9]+)?$")
        message(FATAL_ERROR "${file}: \"${value}\" at ${nm} nm is not a number from 0 up")
      endif()
    endforeach()
    string(REPLACE ";" ", " row "${row}")
    string(APPEND wavelengths "${wavelength}, ")
    string(APPEND values "    ${row},\n")
    math(EXPR nm "${nm} + ${step_nm}")
  endforeach()
  math(EXPR end_nm "${last_nm} + ${step_nm}")
  if(NOT nm EQUAL end_nm)
    message(FATAL_ERROR "${file}: the last row is not the one of ${last_nm} nm")
  endif()

  string(APPEND tables "constexpr double k${name}Nm[] = {${wavelengths}};\n"
         "constexpr double k${name}Values[] = {\n${values}};\n")
  string(APPEND objects
         "constinit const SpectralTable k${name}Table{k${name}Nm, k${name}Values, ${columns}};\n")
  set(tables "${tables}" PARENT_SCOPE)
  set(objects "${objects}" PARENT_SCOPE)
endfunction()

table(ChartReflectance chart24_reflectance.csv 24 380 780 5)
table(Observer cie_1931_2deg_cmf.csv 3 360 830 5)
table(Illuminant cie_illuminants_a_d50_d65.csv 3 300 830 5)
table(Fluorescent cie_fluorescent_f1_f12.csv 12 380 780 5)
table(Horizon horizon_light.csv 1 300 830 5)
table(SkinReflectance skin_reflectance.csv 357 400 700 10)

file(WRITE "${OUTPUT}" "// Generated from data/*.csv by cmake/EmbedSpectra.cmake.\n"
     "#include \"spectral_tables.h\"\n\nnamespace greycard {\nnamespace {\n${tables}}  // namespace\n\n"
     "${objects}}  // namespace greycard\n")
