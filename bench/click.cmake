if(TARGET fake_platform)
  add_executable(bench_click ClickBench.cpp)
  target_link_libraries(bench_click PRIVATE typeslate_bundle_code fake_platform linux_platform)
endif()
