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

# The newest Qt found, or the one asked for.
set(TYPESLATE_QT "" CACHE STRING "Major version of Qt to build with: 6, 5, or empty for the newest")
set(TYPESLATE_HAVE_QT OFF)
foreach(candidate "6;6.4" "5;5.15")
  list(GET candidate 0 major)
  list(GET candidate 1 minimum)
  if(NOT TYPESLATE_HAVE_QT AND (NOT TYPESLATE_QT OR TYPESLATE_QT STREQUAL major))
    find_package(Qt${major} ${minimum} QUIET COMPONENTS Core Gui Widgets DBus UiTools Svg Test)
    if(Qt${major}_FOUND)
      set(TYPESLATE_HAVE_QT ON)
      set(TYPESLATE_QT_MAJOR ${major})
    endif()
  endif()
endforeach()
if(NOT TYPESLATE_HAVE_QT)
  typeslate_left_out("panehost, typeslatectl watch and their tests (Qt 6.4 or 5.15 with UiTools, Svg and DBus)")
endif()

# Plain C, so that the runtime library can be loaded beside either Qt.
find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
  pkg_check_modules(DBUS QUIET IMPORTED_TARGET dbus-1)
  pkg_check_modules(XCB QUIET IMPORTED_TARGET xcb)
endif()
if(TYPESLATE_HAVE_QT AND NOT XCB_FOUND)
  typeslate_left_out("panehost's answer to a desktop's startup notification (libxcb)")
endif()
if(NOT DBUS_FOUND)
  typeslate_left_out("libplinth.so and the tests that use it (libdbus-1)")
endif()

find_package(CLI11 QUIET)
find_package(RapidJSON QUIET)
if(CLI11_FOUND AND RapidJSON_FOUND)
  set(TYPESLATE_HAVE_CTL ON)
else()
  typeslate_left_out("typeslatectl and its tests (CLI11, RapidJSON)")
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
