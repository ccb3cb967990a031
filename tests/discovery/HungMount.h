// SPDX-License-Identifier: MIT
#pragma once

#include "FileDescriptor.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <thread>

#include <fcntl.h>
#include <linux/fuse.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace portolan {

/// A real mount whose file system accepts every request and never answers, like a dead network mount: a
/// process that accesses it blocks in the kernel and cannot even be killed. Its root can be entered. It
/// exists in a private mount namespace, so that no other program is affected.
class HungMount
{
public:
    /// Nothing where mounting is not permitted.
    static std::unique_ptr<HungMount> create()
    {
        std::unique_ptr<HungMount> mount(new HungMount);
        return mount->mounted() ? std::move(mount) : nullptr;
    }
    ~HungMount()
    {
        release();
        umount2(QFile::encodeName(path()).constData(), MNT_DETACH);
    }

    [[nodiscard]] QString path() const { return m_directory.path(); }
    /// The number of requests accepted so far.
    [[nodiscard]] int taken() const { return m_taken; }
    /// Makes all pending and later requests fail.
    void release()
    {
        m_thread = {};
        m_server.close();
    }

private:
    HungMount()
        : m_server(open("/dev/fuse", O_RDWR | O_CLOEXEC | O_NONBLOCK))
    {}

    bool mounted()
    {
        if (!m_server.isOpen() || unshare(CLONE_NEWNS) != 0 ||
            ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            return false;
        const QByteArray options =
            "fd=" + QByteArray::number(m_server.get()) + ",rootmode=40000,user_id=0,group_id=0,allow_other";
        if (::mount("hung", QFile::encodeName(path()).constData(), "fuse", MS_NOSUID | MS_NODEV,
                    options.constData()) != 0)
            return false;
        m_thread = std::jthread([this](const std::stop_token &stop) { take(stop); });
        return true;
    }

    void take(const std::stop_token &stop)
    {
        std::array<char, FUSE_MIN_READ_BUFFER + 128 * 1024> question;
        while (!stop.stop_requested()) {
            pollfd watched{.fd = m_server.get(), .events = POLLIN, .revents = 0};
            poll(&watched, 1, 20);
            const ssize_t length = read(m_server.get(), question.data(), question.size());
            if (length < ssize_t(sizeof(fuse_in_header)))
                continue;
            fuse_in_header header;
            std::memcpy(&header, question.data(), sizeof header);
            if (header.opcode == FUSE_INIT)
                answer(header, fuse_init_out{.major = FUSE_KERNEL_VERSION,
                                             .minor = 31,
                                             .flags = FUSE_PARALLEL_DIROPS, // otherwise one request at a time
                                             .max_write = 4096});
            else if (header.opcode == FUSE_ACCESS)
                refuse(header, -ENOSYS);
            else
                ++m_taken;
        }
    }

    template <typename Body>
    void answer(const fuse_in_header &question, const Body &body)
    {
        struct
        {
            fuse_out_header header;
            Body body;
        } const reply{{.len = sizeof reply, .error = 0, .unique = question.unique}, body};
        EXPECT_EQ(write(m_server.get(), &reply, sizeof reply), ssize_t(sizeof reply));
    }
    void refuse(const fuse_in_header &question, int error)
    {
        const fuse_out_header reply{.len = sizeof reply, .error = error, .unique = question.unique};
        EXPECT_EQ(write(m_server.get(), &reply, sizeof reply), ssize_t(sizeof reply));
    }

    QTemporaryDir m_directory;
    FileDescriptor m_server;
    std::atomic<int> m_taken = 0;
    std::jthread m_thread;
};

} // namespace portolan
