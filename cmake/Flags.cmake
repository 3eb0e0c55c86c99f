# The flags of every target, set once. Warnings are errors in all of them.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
# Sanitized code is for catching faults, not for stepping through: -O1 halves the time of the test run.
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1 -fno-omit-frame-pointer")
set(CMAKE_C_FLAGS_DEBUG "-O1 -g1 -fno-omit-frame-pointer")

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Werror)
# Four-character codes are how this platform writes its constants.
add_compile_options(-Wno-multichar $<$<CXX_COMPILER_ID:Clang>:-Wno-four-char-constants>)
add_compile_definitions(_GNU_SOURCE)

if(VANTOR_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()
if(VANTOR_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
