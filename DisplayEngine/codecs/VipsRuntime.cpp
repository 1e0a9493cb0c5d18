#include "codecs/VipsRuntime.h"

#include <QLoggingCategory>

#include <vips/vips.h>

#include <mutex>

namespace sorvane {

namespace {

// libvips reports tolerable damage ("error in tile", an ignored colour profile)
// as warnings on standard error; they belong in our own log, quietly.
// Off unless asked for (sorvane verify/export --verbose turns it on).
Q_LOGGING_CATEGORY(lcVips, "sorvane.vips", QtWarningMsg)

void forwardVipsMessage(const gchar *, GLogLevelFlags, const gchar *message, gpointer)
{
    qCDebug(lcVips, "%s", message);
}

} // namespace

bool VipsRuntime::ensureStarted()
{
    static std::once_flag once;
    static bool started = false;
    std::call_once(once, [] {
        started = VIPS_INIT("sorvane") == 0;
        if (started) {
            // Probing thousands of files must not keep them all cached and open.
            vips_cache_set_max(0);
            vips_leak_set(FALSE);
            // Files come from strangers: only the loaders fit for untrusted input
            // may sniff them (this also spares every probe a pass through slide,
            // document and ImageMagick loaders).
            vips_block_untrusted_set(TRUE);
            g_log_set_handler(
                "VIPS", GLogLevelFlags(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE), forwardVipsMessage, nullptr);
            // JPEG XL is a photo format people really have; its loader is kept.
            vips_operation_block_set("VipsForeignLoadJxlFile", FALSE);
        }
    });
    return started;
}

const char *VipsRuntime::takeError()
{
    thread_local static std::string last;
    last = vips_error_buffer();
    vips_error_clear();
    return last.c_str();
}

} // namespace sorvane
