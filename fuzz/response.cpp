// SPDX-License-Identifier: MIT
// The head of an HTTP response.
#include "RequestTarget.h"
#include "Require.h"
#include "ResponseHead.h"

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    ResponseHead head;
    head.read(bytes);
    ResponseHead slow;
    for (size_t i = 0; i < size; ++i)
        slow.read(bytes.substr(i, 1));
    require(head.state() == slow.state());
    if (head.state() != ResponseHead::State::Complete)
        return 0;
    require(head.status() >= 200 && head.status() <= 999);
    require(head.status() == slow.status() && head.redirect() == slow.redirect());
    if (const auto target = RequestTarget(3000).redirected(head.redirect())) {
        require(target->url().starts_with("http"));
        require(target->url().find_first_of("\r\n ") == std::string::npos);
        require(!target->isLocal() || target->path().starts_with('/'));
        const auto again = target->redirected(target->url());
        require(again && again->url() == target->url() && again->isLocal() == target->isLocal());
    }
    return 0;
}

} // namespace portolan
