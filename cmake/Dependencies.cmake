# What the machine has decides what is built. Only a compiler and CMake are needed for the bundle, the platform layer
# below it and their tests; everything else that is missing is named at the end of the configuration and in
# left-out.txt in the build folder.

set_property(GLOBAL PROPERTY TYPESLATE_LEFT_OUT "")

function(typeslate_left_out text)
  set_property(GLOBAL APPEND PROPERTY TYPESLATE_LEFT_OUT "${text}")
endfunction()

function(typeslate_report_left_out)
  get_property(items GLOBAL PROPERTY TYPESLATE_LEFT_OUT)
  list(JOIN items "\n" text)
  file(WRITE ${CMAKE_BINARY_DIR}/left-out.txt "${text}")
  foreach(item IN LISTS items)
    message(STATUS "Left out: ${item}")
  endforeach()
endfunction()

find_package(Threads REQUIRED)

find_package(Qt6 6.4 QUIET COMPONENTS Core Gui Widgets DBus UiTools Svg)
if(Qt6_FOUND)
  set(TYPESLATE_HAVE_QT ON)
else()
  typeslate_left_out("panehost, libplinth.so, typeslatectl watch and their tests (Qt 6.4 with UiTools, Svg and DBus)")
endif()

find_package(CLI11 QUIET)
find_package(nlohmann_json QUIET)
if(CLI11_FOUND AND nlohmann_json_FOUND)
  set(TYPESLATE_HAVE_CTL ON)
else()
  typeslate_left_out("typeslatectl and its tests (CLI11, nlohmann-json)")
endif()

find_package(benchmark QUIET)
if(NOT benchmark_FOUND AND TYPESLATE_BENCH)
  typeslate_left_out("benchmarks (Google Benchmark)")
endif()

find_package(ICU QUIET COMPONENTS i18n uc)
if(NOT ICU_FOUND)
  typeslate_left_out("dates in the user's language (ICU)")
endif()

find_package(Python3 QUIET COMPONENTS Interpreter)
