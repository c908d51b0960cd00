# The headers that most sources include are compiled once for each layer. With OFF, each source is compiled
# with only what it includes itself; `./test tidy` does so, and then shows a source that lacks an include.
option(PRECOMPILED_HEADERS "Compile the common headers once a layer" ON)

# precompiled_layer(<layer> LIBS <target>... HEADERS <header>...)
function(precompiled_layer layer)
    cmake_parse_arguments(ARG "" "" "LIBS;HEADERS" ${ARGN})
    set(source ${CMAKE_BINARY_DIR}/precompiled_${layer}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(precompiled_${layer} OBJECT ${source})
    target_link_libraries(precompiled_${layer} PRIVATE house_warnings ${ARG_LIBS})
    target_precompile_headers(precompiled_${layer} PRIVATE ${ARG_HEADERS})
endfunction()

# use_precompiled(<layer> <target>...): the targets take the layer's headers.
function(use_precompiled layer)
    if(PRECOMPILED_HEADERS)
        foreach(target IN LISTS ARGN)
            target_precompile_headers(${target} REUSE_FROM precompiled_${layer})
        endforeach()
    endif()
endfunction()

if(PRECOMPILED_HEADERS)
    # Some libraries need this option, and a precompiled header serves only sources with the same options.
    add_compile_options(-pthread)
    set(standard_headers <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <cstring>
        <functional> <memory> <mutex> <optional> <utility> <vector>)
    set(gui_headers <QColor> <QDateTime> <QDir> <QElapsedTimer> <QFile> <QHash> <QImage> <QList>
        <QObject> <QPainter> <QPoint> <QPointer> <QRect> <QSize> <QString> <QStringList> <QThread>
        <QTimer> <QVector>)
    precompiled_layer(gui LIBS Qt5::Core Qt5::Gui HEADERS ${standard_headers} ${gui_headers})
    precompiled_layer(widgets LIBS Qt5::Core Qt5::Gui Qt5::Widgets
        HEADERS ${standard_headers} ${gui_headers} <QApplication> <QLabel> <QMouseEvent>
            <QPushButton> <QWidget>)
    set(test_headers <QProcess> <QSignalSpy> <QTemporaryDir> <QtTest>)
    precompiled_layer(gui_test LIBS Qt5::Core Qt5::Gui Qt5::Test
        HEADERS ${standard_headers} ${gui_headers} ${test_headers})
    precompiled_layer(test LIBS Qt5::Core Qt5::Gui Qt5::Widgets Qt5::Test
        HEADERS ${standard_headers} ${gui_headers} ${test_headers} <QApplication> <QLabel>
            <QMouseEvent> <QPushButton> <QWidget>)
    target_compile_options(precompiled_gui_test PRIVATE ${TEST_CODE_OPTIONS})
    target_compile_options(precompiled_test PRIVATE ${TEST_CODE_OPTIONS})
endif()
