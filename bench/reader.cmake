if(TARGET libtypeslate)
  add_executable(bench_reader ReaderBench.cpp)
  target_link_libraries(bench_reader PRIVATE libtypeslate reader_rules)
endif()
