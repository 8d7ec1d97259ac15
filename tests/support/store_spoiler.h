// Spoils the bytes of a store, in a way that the seed tells: cut, bytes turned, pages of zeros or of another place, or
// pages in use that are called free.
#pragma once
#include <QRandomGenerator>
#include <QString>
#include <QtEndian>

struct store_spoiler {
    static constexpr int page_size = 4096;
    static constexpr int first_free_page = 32; // its number in the file's head

    QRandomGenerator random;

    // What is written next goes over pages that are in use.
    QString call_pages_free(QByteArray &bytes, int pages)
    {
        char *list = bytes.data() + (qFromBigEndian<qint32>(bytes.constData() + first_free_page) - 1) * page_size;
        const qint32 leaves = qFromBigEndian<qint32>(list + 4);
        for (qint32 leaf = 0; leaf < leaves; ++leaf)
            qToBigEndian<qint32>(random.bounded(2, pages + 1), list + 8 + leaf * 4);
        return QString("%1 pages called free").arg(leaves);
    }

    QString spoil(QByteArray &bytes, int kind)
    {
        const int pages = int(bytes.size() / page_size);
        switch (kind) {
        case 0: {
            const int size =
                random.bounded(2) ? random.bounded(1, pages) * page_size : random.bounded(int(bytes.size()));
            bytes.truncate(size);
            return QString("cut at %1").arg(size);
        }
        case 1: {
            QString told("bytes turned:");
            for (int left = random.bounded(1, 30); left > 0; --left) {
                const int at = random.bounded(int(bytes.size()));
                bytes[at] = char(bytes[at] ^ random.bounded(1, 256));
                told += QString(" %1").arg(at);
            }
            return told;
        }
        case 2: {
            // Where the tree of a table begins, most bytes lead somewhere.
            const int page = random.bounded(pages);
            const int at = page * page_size + (page == 0 ? random.bounded(100) : random.bounded(40));
            bytes[at] = char(bytes[at] ^ random.bounded(1, 256));
            return QString("a byte turned at the head of page %1: %2").arg(page + 1).arg(at);
        }
        case 3: {
            QString told("pages of zeros:");
            for (int left = random.bounded(1, 4); left > 0; --left) {
                const int page = random.bounded(pages);
                bytes.replace(page * page_size, page_size, QByteArray(page_size, 0));
                told += QString(" %1").arg(page + 1);
            }
            return told;
        }
        case 4: {
            const int page = random.bounded(1, pages);
            const int other = random.bounded(1, pages);
            bytes.replace(page * page_size, page_size, bytes.mid(other * page_size, page_size));
            return QString("page %1 is a copy of page %2").arg(page + 1).arg(other + 1);
        }
        default:
            return call_pages_free(bytes, pages);
        }
    }
};
