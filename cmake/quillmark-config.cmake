include(${CMAKE_CURRENT_LIST_DIR}/quillmark-targets.cmake)
