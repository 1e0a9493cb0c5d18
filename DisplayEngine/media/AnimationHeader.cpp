#include "media/AnimationHeader.h"

#include <QFile>

namespace sorvane {

namespace {

// Walks a GIF's blocks as far as the bytes go: the looping block, or a second image, says
// it moves. Image data is skipped by its sub-block lengths, never decoded.
class GifBlocks {
public:
    explicit GifBlocks(const QByteArray &bytes) : m_bytes(bytes) { }

    bool animated()
    {
        if (m_bytes.size() < 13)
            return false;
        m_at = 13 + colorTableBytes(byteAt(10));
        int images = 0;
        while (m_at < m_bytes.size()) {
            const int introducer = byteAt(m_at++);
            if (introducer == 0x21) {
                const int label = byteAt(m_at++);
                if (label == 0xFF && isLoopingApplication())
                    return true;
                if (!skipSubBlocks())
                    return false;
            } else if (introducer == 0x2C) {
                if (++images > 1)
                    return true;
                const qsizetype packedAt = m_at + 8;
                if (packedAt >= m_bytes.size())
                    return false;
                m_at += 9 + colorTableBytes(byteAt(packedAt)) + 1;
                if (!skipSubBlocks())
                    return false;
            } else {
                return false; // the trailer, or bytes that are no GIF block
            }
        }
        return false;
    }

private:
    int byteAt(qsizetype index) const
    {
        return index < m_bytes.size() ? static_cast<unsigned char>(m_bytes.at(index)) : -1;
    }

    static qsizetype colorTableBytes(int packed)
    {
        return packed >= 0 && (packed & 0x80) ? 3 << ((packed & 7) + 1) : 0;
    }

    bool isLoopingApplication() const
    {
        const QByteArray name = m_bytes.mid(m_at + 1, 11);
        return byteAt(m_at) == 11 && (name == "NETSCAPE2.0" || name == "ANIMEXTS1.0");
    }

    // False when the bytes run out first.
    bool skipSubBlocks()
    {
        while (true) {
            const int length = byteAt(m_at);
            if (length < 0)
                return false;
            m_at += 1 + length;
            if (length == 0)
                return true;
        }
    }

    const QByteArray &m_bytes;
    qsizetype m_at = 0;
};

bool isAnimatedWebp(const QByteArray &head)
{
    constexpr qsizetype flagsAt = 20;
    constexpr char animationFlag = 0x02;
    return head.size() > flagsAt && head.startsWith("RIFF") && head.mid(8, 8) == "WEBPVP8X"
        && (head.at(flagsAt) & animationFlag);
}

} // namespace

AnimationType AnimationHeader::typeOf(const QByteArray &head)
{
    if (head.startsWith("GIF87a") || head.startsWith("GIF89a"))
        return GifBlocks(head).animated() ? AnimationType::gif : AnimationType::none;
    return isAnimatedWebp(head) ? AnimationType::webp : AnimationType::none;
}

AnimationType AnimationHeader::typeOfFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return AnimationType::none;
    return typeOf(file.read(kHeadBytes));
}

} // namespace sorvane
