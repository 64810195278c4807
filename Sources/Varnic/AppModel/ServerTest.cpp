#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Background.h"
#include "VarnicCore/AISummariser/ServerModels.h"

namespace varnic {

QCoro::Task<ServerAnswer> AppModel::askServer() {
    const AISettings asked = settings.ai.value();
    const std::stop_token stop = stopProcessing_.get_token();
    const auto sender = transport;
    const KeyReading reading = co_await apiKey.readForRequest();
    const auto ask = [asked, key = reading.key, sender, stop]() -> ServerAnswer {
        try {
            return ServerModels::ask(asked.compatBaseURL, key, *sender, stop);
        } catch (const http::Cancellation& stopped) {
            return {.kind = ServerAnswer::Kind::unreachable, .models = {}, .sentence = stopped.what()};
        }
    };
    co_return co_await inBackground(ask);
}

} // namespace varnic
