# Headers of Qt, the standard library and GoogleTest are parsed once, not once a source. A source
# still includes what it uses: clang-tidy (.ci/tidy.py) and the preset clang read it without them.
include_guard(GLOBAL)

# labelcut_precompiled_headers(NAME LINK target… HEADERS header…): what targets reuse by
# labelcut_reuse_headers. The compiler refuses them, as an error, to a target of other options.
function(labelcut_precompiled_headers name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINK;HEADERS")
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "// Carries precompiled headers; holds nothing itself.\n")
  add_library(${name} OBJECT "${source}")
  target_link_libraries(${name} PRIVATE labelcut_compiler ${arg_LINK})
  set(headers ${arg_HEADERS})
  list(TRANSFORM headers PREPEND "<")
  list(TRANSFORM headers APPEND ">")
  target_precompile_headers(${name} PRIVATE ${headers})
endfunction()

# labelcut_reuse_headers(TARGET NAME): the compiler takes them only where it is told the same macros
# of Qt; what a target may include is still said by the libraries that it links.
function(labelcut_reuse_headers target name)
  if(LABELCUT_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${name})
    target_compile_definitions(${target} PRIVATE QT_CORE_LIB QT_GUI_LIB QT_WIDGETS_LIB)
  endif()
endfunction()

set(labelcut_std_headers
  algorithm array atomic chrono cmath cstdint cstdio cstdlib cstring exception functional iterator
  limits map memory optional set span string string_view thread type_traits utility variant vector)
set(labelcut_qt_headers
  QAbstractSpinBox QAccessible QAccessibleWidget QApplication QBoxLayout QByteArray QByteArrayView
  QCheckBox QComboBox QCoreApplication QCryptographicHash QDateTime QDir QElapsedTimer QEvent QFile
  QFileDialog QFileInfo QFontMetricsF QFormLayout QGroupBox QGuiApplication QIODevice QIcon QImage
  QJsonArray QJsonDocument QJsonObject QKeyEvent QLabel QLineEdit QList QLocale QMap QObject QPainter
  QPalette QPixmap QPointer QProgressBar QProcess QPushButton QRegularExpression QSaveFile QScrollArea QSet
  QSettings QSizeF QSpinBox QStandardPaths QString QStringDecoder QStringList QStyle QTabWidget
  QTemporaryDir QTemporaryFile QTimeZone QTimer QToolButton QVariant QVariantMap QWheelEvent QWidget
  QXmlStreamReader)

if(LABELCUT_PRECOMPILE)
  labelcut_precompiled_headers(labelcut_library_headers
    LINK Qt6::Core Qt6::Gui Qt6::Widgets
    HEADERS ${labelcut_std_headers} ${labelcut_qt_headers})
endif()
