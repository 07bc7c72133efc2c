# Precompiled Qt headers in three sets, each a superset of the one before:
# CORE (Qt Core, for the GUI-free targets), WIDGETS (adds Gui and Widgets) and
# TEST (adds QtTest). Each set is compiled once, by a small object library of
# its own, and reused by every target of its kind. GCC takes the file only
# where the code model and options match (every target is -fPIC: Qt adds it to
# executables too) and the target defines every macro the owner defined and
# none more that the headers test. So each owner links the fewest Qt modules;
# QtTest's header tests QT_NETWORK_LIB, hence Network for TEST. A rejected
# file shows as an "invalid-pch" warning. -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON
# builds without them.
set(_velora_pch_CORE
  <QByteArray> <QCoreApplication> <QDateTime> <QDir> <QFile> <QHash> <QJsonArray>
  <QJsonDocument> <QJsonObject> <QJsonValue> <QList> <QMap> <QMutex> <QObject>
  <QPointer> <QString> <QStringList> <QVariant> <QVector>)
set(_velora_pch_WIDGETS ${_velora_pch_CORE}
  <QAbstractItemModel> <QApplication> <QColor> <QComboBox> <QDialog> <QHBoxLayout>
  <QHeaderView> <QLabel> <QLineEdit> <QMouseEvent> <QPainter> <QPushButton>
  <QTableView> <QTreeView> <QVBoxLayout> <QWidget>)
set(_velora_pch_TEST ${_velora_pch_WIDGETS} <QtConcurrent> <QtTest>)

set(_velora_pch_source "${CMAKE_BINARY_DIR}/velora_pch.cpp")
file(CONFIGURE OUTPUT "${_velora_pch_source}" CONTENT "// Compiles a precompiled header set.\n")
foreach(_set IN ITEMS CORE WIDGETS TEST)
  string(TOLOWER "velora_pch_${_set}" _owner)
  add_library(${_owner} OBJECT EXCLUDE_FROM_ALL "${_velora_pch_source}")
  target_precompile_headers(${_owner} PRIVATE ${_velora_pch_${_set}})
endforeach()
target_link_libraries(velora_pch_core PRIVATE Qt5::Core)
target_link_libraries(velora_pch_widgets PRIVATE Qt5::Widgets)
target_link_libraries(velora_pch_test PRIVATE Qt5::Widgets Qt5::Network Qt5::Concurrent Qt5::Test)

# Reuses the precompiled header set CORE, WIDGETS or TEST in `target`.
function(velora_precompile target set)
  string(TOLOWER "velora_pch_${set}" _owner)
  target_precompile_headers(${target} REUSE_FROM ${_owner})
endfunction()

# ccache caches a compile that uses a precompiled header only with these
# sloppiness options: it cannot see the defines and time macros inside the
# header, and the header is always newer than the compile's start. A fresh
# machine has none of them in its ccache.conf, so the build sets them.
if(CCACHE_PROGRAM AND NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
    "CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime"
    "${CCACHE_PROGRAM}")
endif()
