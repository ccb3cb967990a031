#pragma once

#include "FileDescriptor.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <memory>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>

namespace portolan {

/// A real mount whose file system answers nothing, as a dead network mount does: a FUSE mount that nobody
/// serves. It exists in a mount name space of the test's own, so that no other program of the machine meets
/// it.
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
    /// Whatever waits for the file system gets an error now.
    void release() { m_server.close(); }

private:
    HungMount()
        : m_server(open("/dev/fuse", O_RDWR | O_CLOEXEC))
    {}

    bool mounted()
    {
        if (!m_server.isOpen() || unshare(CLONE_NEWNS) != 0 ||
            ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            return false;
        const QByteArray options =
            "fd=" + QByteArray::number(m_server.get()) + ",rootmode=40000,user_id=0,group_id=0";
        return ::mount("hung", QFile::encodeName(path()).constData(), "fuse", MS_NOSUID | MS_NODEV,
                       options.constData()) == 0;
    }

    QTemporaryDir m_directory;
    FileDescriptor m_server;
};

} // namespace portolan
