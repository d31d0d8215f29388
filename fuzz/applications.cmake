if(GLIB_FOUND)
  typeslate_fuzz(fuzz_desktop_entry SOURCES ${CMAKE_SOURCE_DIR}/fuzz/FuzzDesktopEntry.cpp LIBRARIES linux_platform)
endif()
