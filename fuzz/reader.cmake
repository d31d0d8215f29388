if(PCRE2_FOUND)
  typeslate_fuzz(fuzz_reader SOURCES fuzz_reader.cpp LIBRARIES reader_rules)
endif()
