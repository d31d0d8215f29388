if(TYPESLATE_HAVE_QT)
  add_executable(bench_emptywindow EmptyWindow.cpp)
  target_link_libraries(bench_emptywindow PRIVATE Qt${TYPESLATE_QT_MAJOR}::Widgets)
endif()
