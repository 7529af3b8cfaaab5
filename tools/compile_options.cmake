# kavro_options: what every target of this project is compiled and linked with.
add_library(kavro_options INTERFACE)
target_include_directories(kavro_options INTERFACE "${CMAKE_SOURCE_DIR}")

target_compile_options(kavro_options INTERFACE
  $<$<COMPILE_LANGUAGE:CXX>:
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    # A member that an initializer leaves out is zero, which is what is meant.
    -Wno-missing-field-initializers
    -finput-charset=UTF-8
    # No path of the building machine in what is built.
    -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=
  >)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # -Wconversion as the other compiler understands it.
  target_compile_options(kavro_options INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wno-sign-conversion>)
endif()

if(KAVRO_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all)
  target_compile_options(kavro_options INTERFACE ${sanitizers} -fno-omit-frame-pointer
    # The checks that the sanitizers add confuse this warning; the other builds have it.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_compile_definitions(kavro_options INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(kavro_options INTERFACE ${sanitizers})
endif()

if(KAVRO_FUZZ)
  target_compile_options(kavro_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(WIN32)
  target_compile_definitions(kavro_options INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00 WINVER=0x0A00)
  # Small, and the same bytes from the same source.
  target_compile_options(kavro_options INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-ffunction-sections -fdata-sections>)
  target_link_options(kavro_options INTERFACE
    -static -s -Wl,--gc-sections -Wl,--no-insert-timestamp -Wl,--nxcompat -Wl,--dynamicbase
    -Wl,--high-entropy-va)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(kavro_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-flto=thin>)
    target_link_options(kavro_options INTERFACE -flto=thin)
  endif()
endif()
