#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Background.h"
#include "VarnicCore/AISummariser/ServerModels.h"

#include <QPointer>

namespace varnic {

QCoro::Task<ServerAnswer> AppModel::askServer() {
    const AISettings asked = settings.ai.value();
    const std::stop_token stop = stopProcessing_.get_token();
    const auto sender = transport;
    std::optional<std::string> key;
    // A server on this computer needs none; what hangs is not to stand in its way.
    if (asked.needsKey()) {
        const QPointer self(this);
        const KeyReading reading = co_await apiKey.read();
        key = reading.key;
    }
    const auto ask = [asked, key, sender, stop]() -> ServerAnswer {
        try {
            return ServerModels::ask(asked.compatBaseURL, key, *sender, stop);
        } catch (const http::Cancellation& stopped) {
            return {.kind = ServerAnswer::Kind::unreachable, .models = {}, .sentence = stopped.what()};
        }
    };
    co_return co_await inBackground(ask);
}

} // namespace varnic
