# ixovpn_options: the options that every part of the program is compiled and linked with, namely the
# language standard, the warnings, the strict Qt defines and the hardening.

include(CheckCXXCompilerFlag)
include(CheckIPOSupported)
include(CheckPIESupported)

add_library(ixovpn_options INTERFACE)
target_compile_features(ixovpn_options INTERFACE cxx_std_17)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
check_pie_supported(LANGUAGES CXX)

target_compile_options(ixovpn_options INTERFACE
  -Wall -Wextra -Wpedantic
  -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wcast-qual
  -Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wnull-dereference
  -Wformat=2 -Wimplicit-fallthrough -Wextra-semi -Wundef)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # Clang does not know all the warnings above, and warns of one of Qt's macros.
  target_compile_options(ixovpn_options INTERFACE
    -Wno-unknown-warning-option -Wno-gnu-zero-variadic-macro-arguments)
endif()
if(IXOVPN_WERROR)
  target_compile_options(ixovpn_options INTERFACE -Werror)
endif()

target_compile_definitions(ixovpn_options INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_KEYWORDS
  QT_NO_FOREACH
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_STRICT_ITERATORS
  QT_DISABLE_DEPRECATED_BEFORE=0x050F00)

target_compile_options(ixovpn_options INTERFACE
  -fstack-protector-strong -ffunction-sections -fdata-sections)
# The program that users get does not contain the path of the sources, which debuggers need.
target_compile_options(ixovpn_options INTERFACE
  $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>)
if(WIN32)
  # The compiler's own libraries become part of each program; Qt stays shared.
  target_link_options(ixovpn_options INTERFACE
    -static -fstack-protector-strong -Wl,--gc-sections -Wl,-s
    -Wl,--nxcompat -Wl,--dynamicbase -Wl,--high-entropy-va)
else()
  target_compile_options(ixovpn_options INTERFACE -fstack-clash-protection -fcf-protection)
  target_link_options(ixovpn_options INTERFACE
    -Wl,--gc-sections -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--as-needed)
endif()

# Fortified functions need an optimiser, and the sanitisers bring their own checks.
if(NOT IXOVPN_SANITIZE)
  target_compile_options(ixovpn_options INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()

if(IXOVPN_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=undefined
                 -fno-omit-frame-pointer)
  target_compile_options(ixovpn_options INTERFACE ${sanitizers})
  target_link_options(ixovpn_options INTERFACE ${sanitizers})
endif()

# Only the presets for daily work precompile headers: the other presets notice a missing #include.
# With this option ccache can tell which headers a precompiled header contains.
if(NOT CMAKE_DISABLE_PRECOMPILE_HEADERS AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  target_compile_options(ixovpn_options INTERFACE -fpch-preprocess)
endif()

if(IXOVPN_COVERAGE)
  target_compile_options(ixovpn_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(ixovpn_options INTERFACE --coverage)
endif()

# Every library is instrumented for coverage; only the fuzzers link libFuzzer's main().
if(IXOVPN_FUZZ)
  target_compile_options(ixovpn_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Link-time optimisation compiles the whole program anew as a position independent executable, in
# which Qt's meta-objects and signals would get second addresses (copy relocations, canonical PLT
# entries): qobject_cast would fail and connections would not find their signals. So symbols of
# other libraries are accessed indirectly, and where the compiler cannot do that, link-time
# optimisation is off. The linker refuses copy relocations.
check_ipo_supported(RESULT ixovpn_lto LANGUAGES CXX OUTPUT ixovpn_lto_reason)
if(NOT WIN32)
  check_cxx_compiler_flag(-mno-direct-extern-access ixovpn_has_indirect_access)
  if(ixovpn_has_indirect_access)
    add_compile_options(-mno-direct-extern-access)
    add_link_options(-mno-direct-extern-access -Wl,-z,nocopyreloc,-z,text)
  else()
    set(ixovpn_lto OFF)
  endif()
endif()
# On Windows the suite links the static libraries of the release, and link-time optimisation would
# compile the whole program anew for each test.
if(ixovpn_lto AND CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT WIN32)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
endif()
