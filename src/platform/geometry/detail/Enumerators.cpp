#include <memory>

#include "platform/geometry/Point.h"
#include "platform/geometry/detail/PartData.h"
#include "platform/geometry/detail/SegmentBase.h"
#include "platform/geometry/detail/Stores.h"

namespace tess::detail {

namespace {

// Writes through put_X / put_Y go to the owner's vertex array. A true curve that starts or
// ends at a written vertex becomes a straight line: its parameters cannot follow one end alone.
class VertexEnumerator final : public IEnumVertex {
public:
    VertexEnumerator(std::shared_ptr<const void> keep, VertexStore& store) : keep_(std::move(keep)), store_(store) {}

    void Reset() override {
        part_ = 0;
        vertex_ = 0;
        lastPart_ = -1;
        lastVertex_ = -1;
    }

    void Next(std::shared_ptr<IPoint>& point, std::int32_t& partIndex, std::int32_t& vertexIndex) override {
        if (!Advance(partIndex, vertexIndex)) {
            point.reset();
            return;
        }
        const WKSPoint p = store_.StoreGet(partIndex, vertexIndex);
        point = std::make_shared<tess::Point>(p.X, p.Y);
    }

    void QueryNext(IPoint& point, std::int32_t& partIndex, std::int32_t& vertexIndex) override {
        if (!Advance(partIndex, vertexIndex)) return;
        const WKSPoint p = store_.StoreGet(partIndex, vertexIndex);
        point.PutCoords(p.X, p.Y);
    }

    void put_X(double x) override {
        if (lastVertex_ < 0) return;
        WKSPoint p = store_.StoreGet(lastPart_, lastVertex_);
        p.X = x;
        store_.StoreSet(lastPart_, lastVertex_, p);
    }

    void put_Y(double y) override {
        if (lastVertex_ < 0) return;
        WKSPoint p = store_.StoreGet(lastPart_, lastVertex_);
        p.Y = y;
        store_.StoreSet(lastPart_, lastVertex_, p);
    }

    bool IsLastInPart() const override {
        return lastVertex_ >= 0 && lastVertex_ == store_.StorePartSize(lastPart_) - 1;
    }

private:
    bool Advance(std::int32_t& partIndex, std::int32_t& vertexIndex) {
        const std::int32_t parts = store_.StorePartCount();
        while (part_ < parts && vertex_ >= store_.StorePartSize(part_)) {
            ++part_;
            vertex_ = 0;
        }
        if (part_ >= parts) {
            partIndex = -1;
            vertexIndex = -1;
            lastPart_ = -1;
            lastVertex_ = -1;
            return false;
        }
        partIndex = lastPart_ = part_;
        vertexIndex = lastVertex_ = vertex_;
        ++vertex_;
        return true;
    }

    std::shared_ptr<const void> keep_;
    VertexStore& store_;
    std::int32_t part_ = 0;
    std::int32_t vertex_ = 0;
    std::int32_t lastPart_ = -1;
    std::int32_t lastVertex_ = -1;
};

class SegmentEnumerator final : public IEnumSegment {
public:
    SegmentEnumerator(std::shared_ptr<const void> keep, const PartSource& source)
        : keep_(std::move(keep)), source_(source) {}

    void Reset() override {
        part_ = 0;
        segment_ = 0;
        last_ = false;
    }

    void Next(std::shared_ptr<ISegment>& segment, std::int32_t& partIndex, std::int32_t& segmentIndex) override {
        while (part_ < source_.SourcePartCount() && segment_ >= source_.SourcePart(part_).SegmentCount()) {
            ++part_;
            segment_ = 0;
        }
        if (part_ >= source_.SourcePartCount()) {
            segment.reset();
            partIndex = -1;
            segmentIndex = -1;
            last_ = false;
            return;
        }
        const PartData& part = source_.SourcePart(part_);
        segment = MakeSegment(part.SegmentAt(segment_), nullptr);
        partIndex = static_cast<std::int32_t>(part_);
        segmentIndex = segment_;
        last_ = segment_ == part.SegmentCount() - 1;
        ++segment_;
    }

    bool IsLastInPart() const override { return last_; }

private:
    std::shared_ptr<const void> keep_;
    const PartSource& source_;
    std::size_t part_ = 0;
    std::int32_t segment_ = 0;
    bool last_ = false;
};

} // namespace

std::shared_ptr<IEnumVertex> MakeVertexEnumerator(std::shared_ptr<const void> keepAlive, VertexStore& store) {
    return std::make_shared<VertexEnumerator>(std::move(keepAlive), store);
}

std::shared_ptr<IEnumSegment> MakeSegmentEnumerator(std::shared_ptr<const void> keepAlive,
                                                    const PartSource& source) {
    return std::make_shared<SegmentEnumerator>(std::move(keepAlive), source);
}

} // namespace tess::detail
