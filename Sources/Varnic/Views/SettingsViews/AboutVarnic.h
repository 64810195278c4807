#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

namespace varnic {

/// What the program says of itself. Main thread.
class AboutVarnic : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString slogan READ slogan CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString supportAddress READ supportAddress CONSTANT)
    /// Whose work is in it, and on what terms, as Markdown.
    Q_PROPERTY(QString thirdParties READ thirdParties CONSTANT)
    /// As it is read, not as it is marked up.
    Q_PROPERTY(QString plainThirdParties READ plainThirdParties CONSTANT)
    Q_PROPERTY(QString licence READ licence CONSTANT)

public:
    static AboutVarnic* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit AboutVarnic(AppModel& model, QObject* parent = nullptr) : QObject(parent), model_(model) {}

    [[nodiscard]] static QString slogan();
    /// "Version 1.0".
    [[nodiscard]] static QString version();
    [[nodiscard]] static QString supportAddress();
    [[nodiscard]] static QString thirdParties();
    [[nodiscard]] static QString plainThirdParties();
    [[nodiscard]] static QString licence();

    /// Begins a message to the support.
    Q_INVOKABLE void writeToSupport() const;

private:
    AppModel& model_;
};

} // namespace varnic
