# Qt's headers take half of the time of the sources that use them: a kind of headers is compiled once, for all targets
# that name it. Their options must agree, but for definitions that these headers don't look at. A source includes what it
# uses all the same: the preset `check` compiles without. Sources without Qt gain nothing by it.
set(standard <algorithm> <chrono> <filesystem> <functional> <map> <memory> <optional> <span> <string> <vector>)
set(VARNIC_HEADERS_QT
    ${standard} <fmt/format.h> <QCoreApplication> <QObject> <QPointer> <QProperty> <QTimer> <QCoro/QCoroTask>)
set(VARNIC_HEADERS_QUICK
    ${standard} <QAbstractListModel> <QColor> <QObject> <QPainter> <QPointer> <QTimer> <QUrl> <QtQmlIntegration>
    <QQmlEngine> <QtQml/qqmlprivate.h> <QQuickItem> <QQuickPaintedItem> <QQuickWindow>)

# varnic_precompile(TARGET KIND)
function(varnic_precompile target kind)
    get_property(owner GLOBAL PROPERTY VARNIC_HEADERS_OWNER_${kind})
    if(owner)
        target_precompile_headers(${target} REUSE_FROM ${owner})
    else()
        target_precompile_headers(${target} PRIVATE ${VARNIC_HEADERS_${kind}})
        set_property(GLOBAL PROPERTY VARNIC_HEADERS_OWNER_${kind} ${target})
    endif()
endfunction()
