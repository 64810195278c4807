#include "Varnic/Background.h"

namespace varnic {

QThreadPool& backgroundThreads() {
    static QThreadPool pool;
    pool.setMaxThreadCount(64);
    return pool;
}

} // namespace varnic
