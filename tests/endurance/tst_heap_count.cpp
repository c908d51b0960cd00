#include "tests/TestProgram.h"
#include "tests/endurance/HeapCount.h"

#include <QtTest>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <new>

#include <malloc.h>

namespace
{

constexpr long long SMALL_BLOCK = 100000;
constexpr long long LARGE_BLOCK = 3000000;
/// What the allocator gives more than it was asked for, and what else happens in a test meanwhile.
constexpr long long ROUNDING = 5000;

/// By how many bytes the blocks grow while `act` runs.
HeapCount::Use grown(const std::function<void()> &act)
{
    const HeapCount::Use before = HeapCount::use();
    act();
    const HeapCount::Use after = HeapCount::use();
    return {after.small - before.small, after.large - before.large};
}

bool isNear(long long bytes, long long expected)
{
    return std::abs(bytes - expected) < ROUNDING;
}

} // namespace

class HeapCountTest : public QObject
{
    Q_OBJECT

private slots:
    void everyWayToTakeABlockIsCounted_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("malloc") << 0;
        QTest::newRow("calloc") << 1;
        QTest::newRow("realloc") << 2;
        QTest::newRow("memalign") << 3;
        QTest::newRow("aligned_alloc") << 4;
        QTest::newRow("posix_memalign") << 5;
    }
    void everyWayToTakeABlockIsCounted()
    {
        QFETCH(int, way);
        for (const long long bytes : {SMALL_BLOCK, LARGE_BLOCK}) {
            void *volatile block = nullptr;
            const HeapCount::Use taken = grown([&] { block = take(way, bytes); });
            QVERIFY(isNear(taken.small, bytes == SMALL_BLOCK ? bytes : 0));
            QVERIFY(isNear(taken.large, bytes == LARGE_BLOCK ? bytes : 0));
            const HeapCount::Use given = grown([&] { std::free(block); });
            QVERIFY(isNear(given.small, -taken.small));
            QVERIFY(isNear(given.large, -taken.large));
        }
    }

    void aBlockThatGrowsIsCountedAsWhatItIsNow()
    {
        void *volatile block = std::malloc(SMALL_BLOCK);
        const HeapCount::Use more = grown([&] { block = std::realloc(block, LARGE_BLOCK); });
        QVERIFY(isNear(more.small, -SMALL_BLOCK));
        QVERIFY(isNear(more.large, LARGE_BLOCK));
        const HeapCount::Use less = grown([&] { block = std::realloc(block, SMALL_BLOCK); });
        QVERIFY(isNear(less.small, SMALL_BLOCK));
        QVERIFY(isNear(less.large, -LARGE_BLOCK));
        std::free(block);
    }

    void aBlockThatCannotGrowStaysCounted()
    {
        void *volatile block = std::malloc(SMALL_BLOCK);
        void *volatile moved = nullptr;
        volatile std::size_t tooMuch = PTRDIFF_MAX;
        const HeapCount::Use use = grown([&] { moved = std::realloc(block, tooMuch); });
        QVERIFY(!moved);
        QVERIFY(isNear(use.small, 0));
        QVERIFY(isNear(use.large, 0));
        std::free(block);
    }

    // The allocator counts it as a small one there, or not at all, by what was freed before.
    void aPictureIsLargeWhereverThereIsRoomForIt()
    {
        mallopt(M_MMAP_THRESHOLD, HeapCount::LARGE);
        mallopt(M_TRIM_THRESHOLD, 100 * LARGE_BLOCK);
        void *volatile pieces[100];
        for (auto &piece : pieces)
            piece = std::malloc(SMALL_BLOCK);
        for (auto &piece : pieces)
            std::free(piece);
        void *volatile picture = nullptr;
        const std::size_t mapped = mallinfo2().hblkhd;
        const HeapCount::Use use = grown([&] { picture = std::malloc(LARGE_BLOCK); });
        QCOMPARE(mallinfo2().hblkhd, mapped);
        QVERIFY(isNear(use.small, 0));
        QVERIFY(isNear(use.large, LARGE_BLOCK));
        std::free(picture);
    }

    void whatOperatorNewTakesIsCounted()
    {
        char *volatile block = nullptr;
        const HeapCount::Use use = grown([&] { block = new char[LARGE_BLOCK]; });
        QVERIFY(isNear(use.large, LARGE_BLOCK));
        delete[] block;
    }

private:
    static void *take(int way, std::size_t bytes)
    {
        void *block = nullptr;
        switch (way) {
        case 0:
            return std::malloc(bytes);
        case 1:
            return std::calloc(bytes / 8, 8);
        case 2:
            return std::realloc(nullptr, bytes);
        case 3:
            return memalign(64, bytes);
        case 4:
            return std::aligned_alloc(64, bytes);
        default:
            return posix_memalign(&block, 64, bytes) == 0 ? block : nullptr;
        }
    }
};

REGISTER_CORE_TEST(HeapCountTest)
#include "tst_heap_count.moc"
