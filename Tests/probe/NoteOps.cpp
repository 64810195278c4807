#include "probe/Ops.h"

#include "VarnicCore/Models/Call.h"

namespace varnic::probe {

Operations noteOps() {
    return {
        {"call.yourShare",
         [](const Arguments& args) {
             const auto share = args.stored<CallRecord>("call").yourShare();
             return share ? Json(*share) : Json();
         }},
        {"call.name",
         [](const Arguments& args) -> Json {
             return args.stored<CallRecord>("call").name(args.speaker("speaker"), args.text("you"));
         }},
        {"note.recode",
         [](const Arguments& args) -> Json { return jsonText(encode(decodeNote(args.text("text"), args.now()))); }},
    };
}

} // namespace varnic::probe
