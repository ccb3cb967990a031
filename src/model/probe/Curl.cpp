#include "Curl.h"

#include <cstdint>
#include <optional>

#include <dlfcn.h>

namespace portolan {

namespace {

constexpr auto fileName = "libcurl.so.4"; // the one interface that this library has had since 2006

/// Reads functions from a library, and remembers whether any was missing.
class Reader
{
public:
    explicit Reader(void *library)
        : m_library(library)
    {}

    template <typename Function>
    void read(const char *name, Function &function)
    {
        function = reinterpret_cast<Function>(dlsym(m_library, name));
        m_isComplete = m_isComplete && function;
    }

    [[nodiscard]] bool isComplete() const { return m_isComplete; }

private:
    void *m_library;
    bool m_isComplete = true;
};

// When the program ends, OpenSSL would clear up before the thread that probes has ended, which may be in it.
void keepOpenSslToTheEnd(void *library)
{
    constexpr std::uint64_t noAtExit = 0x00080000; // OPENSSL_INIT_NO_ATEXIT
    using Init = int (*)(std::uint64_t options, const void *settings);
    if (const auto init = reinterpret_cast<Init>(dlsym(library, "OPENSSL_init_crypto")))
        init(noAtExit, nullptr);
}

std::optional<Curl> load()
{
    void *const library = dlopen(fileName, RTLD_LAZY | RTLD_LOCAL); // for good: what it loads cannot leave
    if (!library)
        return std::nullopt;
    Curl curl;
    decltype(&::curl_global_init) globalInit = nullptr;
    Reader reader(library);
    reader.read("curl_global_init", globalInit);
    reader.read("curl_easy_init", curl.easy_init);
    reader.read("curl_easy_setopt", curl.easy_setopt);
    reader.read("curl_easy_getinfo", curl.easy_getinfo);
    reader.read("curl_easy_cleanup", curl.easy_cleanup);
    reader.read("curl_multi_init", curl.multi_init);
    reader.read("curl_multi_setopt", curl.multi_setopt);
    reader.read("curl_multi_assign", curl.multi_assign);
    reader.read("curl_multi_add_handle", curl.multi_add_handle);
    reader.read("curl_multi_remove_handle", curl.multi_remove_handle);
    reader.read("curl_multi_socket_action", curl.multi_socket_action);
    reader.read("curl_multi_info_read", curl.multi_info_read);
    reader.read("curl_multi_cleanup", curl.multi_cleanup);
    if (!reader.isComplete())
        return std::nullopt;
    keepOpenSslToTheEnd(library); // which counts only before anything else is asked of it
    if (globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK)
        return std::nullopt;
    return curl;
}

} // namespace

const Curl *Curl::library()
{
    static const std::optional<Curl> curl = load();
    return curl ? &*curl : nullptr;
}

} // namespace portolan
