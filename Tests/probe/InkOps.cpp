#include "probe/Ops.h"

#include "VarnicCore/Ink/InkPen.h"

namespace varnic::probe {

Operations inkOps() {
    return {
        {"ink.point",
         [](const Arguments& args) -> Json {
             const InkPen::Point place = InkPen::point(args.number("t"), args.number("level"),
                                                       {.step = args.number("step"),
                                                        .startX = args.number("startX"),
                                                        .phase = args.integer("phase"),
                                                        .mid = args.number("mid"),
                                                        .amplitude = args.number("amplitude")});
             return {place.x, place.y};
         }},
    };
}

} // namespace varnic::probe
