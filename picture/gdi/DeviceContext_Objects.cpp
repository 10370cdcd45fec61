#include "picture/gdi/DeviceContext.h"

#include <algorithm>

namespace svgtool::picture {

// What is selected where no palette is: the twenty colours that every palette of a device has.
static const Palette &defaultPalette()
{
    static constexpr uint32_t kColors[] = {
        0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080,
        0xC0C0C0, 0xC0DCC0, 0xA6CAF0, 0xFFFBF0, 0xA0A0A4, 0x808080, 0xFF0000,
        0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF,
    };
    static const Palette palette = [] {
        Palette made;
        for (const uint32_t color : kColors)
            made.push_back(color | kAlphaBits);
        return made;
    }();
    return palette;
}

const Palette &DeviceContext::palette() const
{
    return m_state.palette ? *m_state.palette : defaultPalette();
}

Color DeviceContext::colorOfReference(uint32_t reference) const
{
    // PALETTEINDEX, told by its bit, whatever the others are; colours of PALETTERGB (2) are shown.
    constexpr uint32_t kOfPalette = 1 << 24;
    if ((reference & kOfPalette) == 0)
        return { uint8_t(reference), uint8_t(reference >> 8), uint8_t(reference >> 16), 255 };
    const Palette &palette = this->palette();
    const uint32_t index = reference & 0xFFFF;
    return index < palette.size() ? colorOf(palette[index]) : Color{ 0, 0, 0, 255 };
}

static Font stockFont(const char16_t *face, int32_t height, int32_t weight, uint8_t pitchAndFamily)
{
    Font font;
    font.face = face;
    font.height = height;
    font.weight = weight;
    font.pitchAndFamily = pitchAndFamily;
    return font;
}

// Stock objects, [MS-EMF] 2.1.31.
static GdiObject stockObject(uint32_t number)
{
    constexpr uint8_t kFixed = 0x31, kSwiss = 0x22; // pitch and family
    const auto brush = [](uint8_t level) {
        return Brush{ Brush::Kind::Solid, 0, { level, level, level, 255 } };
    };
    const auto pen = [](Pen::Line line, uint8_t level) {
        Pen made;
        made.line = line;
        made.brush.color = { level, level, level, 255 };
        return made;
    };
    switch (number) {
    case 0: // WHITE_BRUSH
    case 18: // DC_BRUSH
        return brush(255);
    case 1: // LTGRAY_BRUSH
        return brush(192);
    case 2: // GRAY_BRUSH
        return brush(128);
    case 3: // DKGRAY_BRUSH
        return brush(64);
    case 4: // BLACK_BRUSH
        return brush(0);
    case 5: // NULL_BRUSH
        return Brush{ Brush::Kind::Null, 0, {} };
    case 6: // WHITE_PEN
        return pen(Pen::Line::Solid, 255);
    case 7: // BLACK_PEN
    case 19: // DC_PEN
        return pen(Pen::Line::Solid, 0);
    case 8: // NULL_PEN
        return pen(Pen::Line::Null, 0);
    case 10: // OEM_FIXED_FONT
        return stockFont(u"Terminal", 12, 400, kFixed);
    case 11: // ANSI_FIXED_FONT
        return stockFont(u"Courier", 12, 400, kFixed);
    case 12: // ANSI_VAR_FONT
        return stockFont(u"MS Sans Serif", 12, 400, kSwiss);
    case 13: // SYSTEM_FONT
    case 14: // DEVICE_DEFAULT_FONT
        return stockFont(u"System", 16, 700, kSwiss);
    case 15: // DEFAULT_PALETTE
        return std::shared_ptr<Palette>();
    case 16: // SYSTEM_FIXED_FONT
        return stockFont(u"Fixedsys", 15, 400, kFixed);
    case 17: // DEFAULT_GUI_FONT
        return stockFont(u"MS Shell Dlg", -11, 400, kSwiss);
    default:
        return {};
    }
}

const GdiObject *DeviceContext::object(uint32_t handle) const
{
    if (handle == 0 || handle >= m_objects.size())
        return nullptr;
    return &m_objects[handle];
}

static constexpr Played kNoSlot = notDone("the table of objects has no such slot");
static constexpr Played kNoObject = notDone("its object was not made");

Played DeviceContext::createObject(uint32_t handle, GdiObject object)
{
    if (handle == 0 || handle >= m_objects.size())
        return kNoSlot;
    m_objects[handle] = std::move(object);
    return kDone;
}

Played DeviceContext::createInFreeSlot(GdiObject object)
{
    if (m_freed.empty() && m_objects.size() > limits::kObjects)
        return notDone("its object finds no place");
    if (m_freed.empty()) {
        m_objects.push_back(std::move(object));
    } else {
        m_objects[m_freed.top()] = std::move(object);
        m_freed.pop();
    }
    return kDone;
}

std::shared_ptr<const Region> DeviceContext::region(uint32_t handle) const
{
    const GdiObject *const chosen = object(handle);
    const auto *const region =
            chosen != nullptr ? std::get_if<std::shared_ptr<const Region>>(chosen) : nullptr;
    return region != nullptr ? *region : nullptr;
}

static size_t cornersOf(const Region &region)
{
    return 4 * region.rects().size();
}

bool DeviceContext::spendRegion(const Region &region)
{
    return spend(m_left.pointsUsedAgain, cornersOf(region));
}

void DeviceContext::grantRegion(const Region &region)
{
    m_left.pointsUsedAgain += cornersOf(region);
}

Played DeviceContext::selectObject(uint32_t handle)
{
    constexpr uint32_t kStock = 0x80000000;
    GdiObject stock;
    const GdiObject *chosen = object(handle);
    if ((handle & kStock) != 0) {
        stock = stockObject(handle & ~kStock);
        chosen = &stock;
    }
    if (chosen == nullptr || std::holds_alternative<std::monostate>(*chosen))
        return kNoObject;
    // What is selected is a copy: that it is deleted while selected changes nothing.
    if (const auto *pen = std::get_if<Pen>(chosen)) {
        m_state.pen = *pen;
        changePenLook();
    } else if (const auto *brush = std::get_if<Brush>(chosen)) {
        m_state.brush = *brush;
    } else if (const auto *font = std::get_if<Font>(chosen)) {
        m_state.font = std::make_shared<const Font>(*font);
    } else {
        return kNeutral; // palettes are selected in a way of their own
    }
    return kDone;
}

Played DeviceContext::deleteObject(uint32_t handle)
{
    if (object(handle) == nullptr)
        return kNoSlot;
    if (std::holds_alternative<std::monostate>(m_objects[handle]))
        return kNeutral;
    m_freed.push(handle);
    m_objects[handle] = std::monostate();
    return kDone;
}

static constexpr Played kNoPalette = notDone("its object is no palette");

Palette *DeviceContext::palette(uint32_t handle)
{
    if (handle == kSelectedPalette)
        return m_state.palette.get();
    if (object(handle) == nullptr)
        return nullptr;
    const auto *const found = std::get_if<std::shared_ptr<Palette>>(&m_objects[handle]);
    return found != nullptr ? found->get() : nullptr;
}

Played DeviceContext::selectPalette(uint32_t handle)
{
    constexpr uint32_t kDefault = 0x8000000F;
    if (handle == kDefault) {
        m_state.palette.reset();
        return kDone;
    }
    if (palette(handle) == nullptr)
        return kNoPalette;
    m_state.palette = std::get<std::shared_ptr<Palette>>(m_objects[handle]);
    return kDone;
}

Played DeviceContext::setPaletteEntries(uint32_t handle, uint32_t first, const Palette &entries)
{
    Palette *const changed = palette(handle);
    if (changed == nullptr)
        return kNoPalette;
    if (first >= changed->size() || entries.size() > changed->size() - first)
        return notDone("its palette has not so many entries");
    std::ranges::copy(entries, changed->begin() + first);
    return kDone;
}

Played DeviceContext::resizePalette(uint32_t handle, uint32_t size)
{
    constexpr uint32_t kMost = 1024; // as GDI takes them
    Palette *const changed = palette(handle);
    if (changed == nullptr)
        return kNoPalette;
    if (size == 0 || size > kMost)
        return notDone("no palette has so many entries");
    changed->resize(size, kBlack);
    return kDone;
}

} // namespace svgtool::picture
