# Headers that nearly every file reads, compiled once: reading them is half of a compilation otherwise. A compiler takes
# such a header only under the options it was made with, hence one for each kind of target: precompiled_core and
# precompiled_ui for the rooms, precompiled_tests_core and precompiled_tests_ui for the test programs, which may cast from
# ASCII. The files still include what they use: the presets bench and fuzz build without these headers.
set(core_headers
  <algorithm> <array> <cmath> <functional> <limits> <memory> <optional> <string> <utility> <variant> <vector>
  <QByteArray> <QDateTime> <QDir> <QFile> <QHash> <QList> <QMap> <QObject> <QString> <QStringList>)
set(ui_headers <QAbstractItemModel> <QApplication> <QKeyEvent> <QLabel> <QLayout> <QLineEdit> <QPainter> <QTimer> <QWidget>)

# precompiled(KIND HEADERS ... LINK ... DEFINE ...) makes precompiled_KIND.
function(precompiled kind)
  cmake_parse_arguments(P "" "" "HEADERS;LINK;DEFINE" ${ARGN})
  if(CMAKE_DISABLE_PRECOMPILE_HEADERS)
    return()
  endif()
  set(name precompiled_${kind})
  set(source "${CMAKE_BINARY_DIR}/${name}.cpp")
  if(NOT EXISTS "${source}")
    file(WRITE "${source}" "")
  endif()
  add_library(${name} OBJECT "${source}")
  target_link_libraries(${name} PRIVATE ${P_LINK})
  target_compile_definitions(${name} PRIVATE ${P_DEFINE})
  target_precompile_headers(${name} PRIVATE ${P_HEADERS})
endfunction()

# Gives TARGET the precompiled headers of KIND, where they are built.
function(use_precompiled target kind)
  if(TARGET precompiled_${kind})
    target_precompile_headers(${target} REUSE_FROM precompiled_${kind})
    # The compiler cache must see the include of the precompiled header.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
  endif()
endfunction()

precompiled(core HEADERS ${core_headers} LINK house Qt6::Core DEFINE QT_NO_CAST_FROM_ASCII)
precompiled(ui HEADERS ${core_headers} ${ui_headers} LINK house Qt6::Widgets DEFINE QT_NO_CAST_FROM_ASCII)
