#include "picture/play/WmfCalls.h"

#include "core/base/Numeric.h"

namespace svgtool::picture::wmf {

static PointL sum(PointL a, PointL b)
{
    return { wrapAdd(a.x, b.x), wrapAdd(a.y, b.y) };
}

Played offsetWindowOrigin(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return dc.setWindowOrigin(sum(dc.state().windowOrigin, takePair(fields)));
}

Played offsetViewportOrigin(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return dc.setViewportOrigin(sum(dc.state().viewportOrigin, takePair(fields)));
}

// Denominator and numerator of y, then those of x.
template<auto Call>
static Played scale(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const PointL y = takePair(fields), x = takePair(fields);
    return (dc.*Call)({ x.x, y.x }, { x.y, y.y });
}

Played scaleWindowExtent(DeviceContext &dc, ByteView record)
{
    return scale<&DeviceContext::scaleWindowExtent>(dc, record);
}

Played scaleViewportExtent(DeviceContext &dc, ByteView record)
{
    return scale<&DeviceContext::scaleViewportExtent>(dc, record);
}

Played setJustification(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const int32_t count = fields.word();
    return dc.setTextJustification(fields.shortInt(), count);
}

} // namespace svgtool::picture::wmf
