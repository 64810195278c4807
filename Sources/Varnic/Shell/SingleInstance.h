#pragma once

#include "Varnic/Shell/Request.h"
#include "VarnicCore/Library/LibraryLock.h"

#include <QObject>
#include <QString>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// Sees to it that one desktop program works on a library: a second start hands over what it was asked to the first and
/// ends. On the session bus the first is org.freedesktop.Application, so that desktops start and call it too; without a
/// bus the library's lock alone shows that there is another one. Main thread.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Outcome {
        /// This is the one; it stays so as long as this object lives.
        first,
        /// The running one has taken the request, and this program should end.
        handedOver,
        /// There is another one which cannot be reached, or no library; `problem` tells.
        refused
    };

    /// `busName` is of the form a.b.C; see `busNameFor`.
    explicit SingleInstance(std::filesystem::path library, QString busName, QObject* parent = nullptr);
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    ~SingleInstance() override;

    /// "app.brevin.Varnic" for the user's library; a name of its own for each other one, so that programs on different
    /// libraries let each other be.
    static QString busNameFor(const std::filesystem::path& library, bool isScratch);

    /// To be asked once, before anything of the library or the settings is touched.
    Outcome claim(const Request& request);

    /// The library lies there now; this program is the one that works on it.
    void follow(std::filesystem::path library);

    /// The user's sentence for a refusal.
    [[nodiscard]] const std::string& problem() const { return problem_; }

    /// Does what other programs ask. Requests that come before it is set are kept for it.
    void setHandler(std::function<void(Request)> handler);

private:
    friend class ApplicationInterface;

    void take(Request request);
    bool handOver(const Request& request);
    bool takeLibrary();
    void releaseName();

    std::filesystem::path library_;
    QString busName_;
    bool hasName_ = false;
    std::optional<LibraryLock> lock_;
    std::string problem_;
    std::vector<Request> waiting_;
    std::function<void(Request)> handler_;
};

} // namespace varnic
