#include "Varnic/Views/SettingsViews/AboutVarnic.h"

#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"

#include <QFile>
#include <QTextDocument>

#include <fmt/format.h>

namespace varnic {

namespace {

constexpr const char* address = "support@brevin.example";

QString resource(const char* name) {
    QFile file(QStringLiteral(":/varnic/about/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

AboutVarnic* AboutVarnic::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new AboutVarnic(ViewContext::of(*engine).model);
}

QString AboutVarnic::slogan() {
    return QString::fromStdString(Wording::shown("Records any call — no bot joins. Writes the notes on your Mac."));
}

QString AboutVarnic::version() {
    return QStringLiteral("Version " VARNIC_VERSION);
}

QString AboutVarnic::supportAddress() {
    return address;
}

QString AboutVarnic::thirdParties() {
    return resource("THIRD-PARTY.md");
}

QString AboutVarnic::plainThirdParties() {
    QTextDocument document;
    document.setMarkdown(thirdParties());
    return document.toPlainText();
}

QString AboutVarnic::licence() {
    return resource("LICENSE");
}

void AboutVarnic::writeToSupport() const {
    model_.desktop.openURL(fmt::format("mailto:{}", address));
}

} // namespace varnic
