#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

// Text alignment, [MS-WMF] 2.1.2.3.
static constexpr uint32_t kUpdatePosition = 1, kRight = 2, kCenter = 6, kBottom = 8, kBaseline = 24,
                          kReadsLeft = 0x100;

// What XML has no character for, and what is not seen anyway.
static bool isShown(char32_t character)
{
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0)
            || (character >= 0xF000 && character < 0xF020);
    return !isControl && (character & 0xFFFE) != 0xFFFE;
}

// A code of a symbol font, which means something in that font alone.
static bool isPrivateCode(const PlacedCharacter &each)
{
    return each.character >= 0xF020 && each.character <= 0xF0FF;
}

static bool isBlank(char32_t character)
{
    return character == U' ' || character == 0xA0;
}

// Leaves the blanks at the ends out, and the controls.
static void keepShown(std::vector<PlacedCharacter> &characters)
{
    size_t count = 0;
    for (PlacedCharacter &each : characters) {
        constexpr char32_t kSoftHyphen = 0xAD; // drawn by GDI, but by no viewer within a line
        if (each.character == kSoftHyphen)
            each.character = U'-';
        if (!isShown(each.character) || (count == 0 && isBlank(each.character)))
            continue;
        PlacedCharacter &place = characters[count++];
        if (&place != &each)
            place = each;
    }
    while (count > 0 && isBlank(characters[count - 1].character))
        --count;
    characters.resize(count);
}

static void appendUtf16(std::u16string &out, char32_t character)
{
    if (character >= 0x10000) {
        out += char16_t(0xD7C0 + (character >> 10));
        out += char16_t(0xDC00 | (character & 0x3FF));
    } else {
        out += char16_t(character);
    }
}

// How far the line's left end and its baseline are from the reference point.
static PointD alignedOffset(uint32_t align, double width, const RealizedFont &font)
{
    const uint32_t horizontal = align & kCenter, vertical = align & kBaseline;
    const double half = font.isWhole ? std::floor(width / 2) : width / 2;
    const double back = horizontal == kCenter ? half : horizontal == kRight ? width : 0;
    const double down = vertical == kBaseline ? 0
            : vertical == kBottom             ? -font.descent
                                              : font.ascent;
    return { -back, down };
}

// Where the letters' own units lie in the picture: the reference point is a whole device unit
// where the letters are.
Affine DeviceContext::textAxes(const TextCall &call, const RealizedFont &font, double width) const
{
    const bool usesPosition = (m_state.textAlign & kUpdatePosition) != 0;
    PointD reference = device(usesPosition ? m_state.current : call.reference);
    if (font.isWhole)
        reference = { std::floor(reference.x + 0.5), std::floor(reference.y + 0.5) };
    reference = m_device.toPicture.map(reference);
    const PointD offset = font.axes.mapVector(alignedOffset(m_state.textAlign, width, font));
    Affine axes = font.axes;
    axes.e = reference.x + offset.x;
    axes.f = reference.y + offset.y;
    return axes;
}

// The clip of a text that has one of its own; that in force where the letters are well inside.
Index DeviceContext::textClip(const TextCall &call, const RectD &ink, const Affine &axes)
{
    const Index inForce = visibleClip();
    const Affine map = toPicture();
    if ((call.options & TextOption::kClipped) == 0
        || (map.keepsRectangles() && mapBounds(map, call.box).contains(mapBounds(axes, ink))))
        return inForce;
    Path path;
    path.addRect(call.box);
    path.transform(map);
    return m_builder.clip({ inForce, path, false });
}

// A box where letters lie, as far as a text that is clipped shows it.
void DeviceContext::fillTextBox(const TextCall &call, const RectD &box, const Affine &axes,
                                Color color)
{
    const Affine map = toPicture();
    const bool isClipped = (call.options & TextOption::kClipped) != 0;
    if (axes.keepsRectangles() && (!isClipped || map.keepsRectangles())) {
        RectD seen = mapBounds(axes, box);
        if (isClipped)
            seen = intersection(seen, mapBounds(map, call.box));
        if (!seen.isEmpty())
            fillBox(seen, color);
        return;
    }
    Node node = newNode();
    node.clip = textClip(call, box, axes);
    node.fill = m_builder.paint({ Paint::Kind::Solid, color, kNone });
    Path path;
    path.addRect(box);
    path.transform(axes);
    m_builder.add(node, path);
}

Played DeviceContext::addToPath(std::span<const PlacedCharacter> characters,
                                const RealizedFont &font, const Affine &axes)
{
    constexpr Played kTooMany = approximated("its path has too many points");
    const auto toDevice = m_device.toPicture.inverse();
    const double perUnit = font.em / font.shape.tables.unitsPerEm;
    if (!toDevice || characters.empty())
        return kDone;
    if (m_left.pointsOfOutlines == 0)
        return kTooMany;
    const LetterOutlines outlines(characters, font.request);
    if (std::ranges::all_of(outlines.all(), &Path::isEmpty))
        return notDone("its font has no outlines");
    for (const PlacedCharacter &each : characters) {
        Path outline = outlines.of(each.character);
        if (!spendPoints(outline.points().size()))
            return kTooMany;
        outline.transform(Affine::scale(perUnit, perUnit)
                                  .then(Affine::translation(each.x, each.y))
                                  .then(axes)
                                  .then(*toDevice));
        m_path.append(outline);
    }
    return kDone;
}

// Letters that are neither stretched nor mirrored nor sheared need no more than a turn.
static bool isTurn(const Affine &axes)
{
    constexpr double kClose = 1e-6;
    return std::abs(axes.a - axes.d) < kClose && std::abs(axes.b + axes.c) < kClose
            && std::abs(axes.determinant() - 1) < kClose;
}

void DeviceContext::drawText(std::span<const PlacedCharacter> characters, const TextCall &call,
                             const RealizedFont &font, const Affine &axes, Index clip)
{
    constexpr double kTolerance = 0.2; // pixels that a character may be away from its place
    constexpr double kDegree = 57.29577951308232;
    constexpr double kLeastTurn = 1e-6; // degrees, of which no letter stands elsewhere
    // Viewers count sizes in small parts of a unit, and break at very large ones: those are scaled.
    constexpr double kLargestSize = 10000;
    const double scale = std::max(font.em / kLargestSize, 1.0);
    Text run;
    std::vector<uint32_t> units; // the first of each character
    units.reserve(characters.size());
    run.characters.reserve(characters.size());
    bool isShaped = false, isReversed = false;
    run.width = (std::abs(characters.back().x - characters.front().x) + font.em) / scale;
    for (const PlacedCharacter &each : characters) {
        units.push_back(uint32_t(run.characters.size()));
        appendUtf16(run.characters, each.character);
        isShaped = isShaped || needsShaping(each.character);
        isReversed = isReversed || isRightToLeft(each.character);
    }
    const bool hasGlyphs = (call.options & TextOption::kGlyphs) != 0;
    // Characters in the order of writing stand where only a viewer knows.
    const bool isViewers = isReversed ? !hasGlyphs : isShaped;
    const double start = isViewers && isReversed ? 0 : characters.front().x;
    if (isViewers)
        run.pieces.push_back({});
    else
        for (const TextRun &each :
             divided(characters, font, kTolerance * m_device.unitsPerPixel / axes.scaleX()))
            run.pieces.push_back({ units[each.first], (each.x - start) / scale, each.y / scale });
    if (hasGlyphs && isReversed)
        run.order = Text::Order::AsItStands;
    else if ((call.options & TextOption::kRightToLeft) != 0
             || (m_state.textAlign & kReadsLeft) != 0)
        run.order = isReversed ? Text::Order::RightToLeft : Text::Order::Natural;

    Node node = newNode();
    node.clip = clip;
    node.fill = m_builder.paint({ Paint::Kind::Solid, m_state.textColor, kNone });
    const PointD baseline = axes.map({ start, 0 });
    if (isTurn(axes) && scale == 1) {
        run.baseline = baseline;
        const double turn = std::atan2(-axes.b, axes.a) * kDegree;
        run.turn = std::abs(turn) < kLeastTurn ? 0 : turn;
    } else {
        Affine placed = Affine::scale(scale, scale).then(axes);
        placed.e = baseline.x;
        placed.f = baseline.y;
        node.transform = m_builder.transform(placed);
    }
    FontStyle &style = m_textStyle;
    style = font.style;
    style.size = font.em / scale;
    if (!leavesLines(characters))
        style.isUnderlined = style.isStruckOut = false;
    run.font = m_builder.font(style);
    m_builder.add(node, std::move(run));
}

Played DeviceContext::drawLetters(std::span<const PlacedCharacter> characters, const TextCall &call,
                                  const RealizedFont &font, const Affine &axes, Index clip)
{
    const char *obstacle = nullptr;
    if (m_drawsOutlines) {
        const bool hasGlyphs = (call.options & TextOption::kGlyphs) != 0;
        const LetterOutlines outlines(characters, font.request);
        if (!hasGlyphs
            && std::ranges::any_of(characters, needsShaping, &PlacedCharacter::character))
            obstacle = "its letters join or change places, so that it stays text";
        else if (std::ranges::any_of(characters, [](const PlacedCharacter &each) {
                     return !each.shape.hasGlyph && !isBlank(each.character);
                 }))
            obstacle = "its font lacks a letter, so that it stays text";
        else if (std::ranges::all_of(outlines.all(), &Path::isEmpty))
            obstacle = "its font has no outlines, so that it stays text";
        else if (!drawGlyphs(characters, outlines, font, axes, clip))
            obstacle = "its letters have too many points, so that it stays text";
    }
    if (!m_drawsOutlines || obstacle != nullptr) {
        drawText(characters, call, font, axes, clip);
        return obstacle != nullptr ? approximated(obstacle) : kDone;
    }
    return font.substitute.empty()
            ? kDone
            : approximated("its font is not installed, and the outlines are another one's");
}

// The numbers of the letters in the scene, which keeps each of them once.
std::optional<std::vector<Index>> DeviceContext::glyphsOf(const LetterOutlines &outlines)
{
    std::vector<Index> glyphs;
    for (const Path &outline : outlines.all()) {
        const size_t known = m_builder.scene().glyphs.size();
        glyphs.push_back(outline.isEmpty() ? kNone : m_builder.glyph(outline));
        if (m_builder.scene().glyphs.size() > known && !spendPoints(outline.points().size()))
            return std::nullopt;
    }
    return glyphs;
}

// A text whose units are those of its font.
bool DeviceContext::drawGlyphs(std::span<const PlacedCharacter> characters,
                               const LetterOutlines &outlines, const RealizedFont &font,
                               const Affine &axes, Index clip)
{
    const double unitsPerEm = font.shape.tables.unitsPerEm, perUnit = font.em / unitsPerEm;
    Affine map = Affine::scale(perUnit, perUnit).then(axes);
    map.e = map.f = 0;
    const auto back = map.inverse();
    if (!back)
        return true;
    const auto glyphs = glyphsOf(outlines);
    if (!glyphs)
        return false;
    Text run;
    run.baseline = back->map({ axes.e, axes.f });
    run.width = (std::abs(characters.back().x - characters.front().x) + font.em) / perUnit;
    for (const PlacedCharacter &each : characters) {
        const Index glyph = (*glyphs)[outlines.number(each.character)];
        if (glyph == kNone)
            continue;
        run.pieces.push_back(
                { uint32_t(run.characters.size()), each.x / perUnit, each.y / perUnit });
        run.glyphs.push_back(glyph);
        appendUtf16(run.characters, each.character);
    }
    FontStyle style;
    style.size = unitsPerEm;
    run.font = m_builder.font(style);
    Node node = newNode();
    node.clip = clip;
    node.fill = m_builder.paint({ Paint::Kind::Solid, m_state.textColor, kNone });
    node.transform = m_builder.transform(map);
    m_builder.add(node, std::move(run));
    return true;
}

bool DeviceContext::leavesLines(std::span<const PlacedCharacter> characters) const
{
    return !m_drawsOutlines
            && std::ranges::any_of(characters, needsShaping, &PlacedCharacter::character);
}

// Lines under and through letters, and the blanks at their ends. Viewers would draw them in other
// places, of other widths, and break them where letters are told their places.
void DeviceContext::drawLines(const TextCall &call, PointD left, double width,
                              const RealizedFont &font, const Affine &axes)
{
    const FontShape &shape = font.shape;
    const double perUnit = font.em / shape.tables.unitsPerEm;
    const auto line = [&](double top, double thickness) {
        double above = top * perUnit, high = thickness * perUnit;
        if (font.isWhole) {
            above = std::floor(above + 0.5);
            high = std::max(1.0, std::floor(high + 0.5));
        }
        const double y = left.y - above;
        fillTextBox(call, { left.x, y, left.x + width, y + high }, axes, m_state.textColor);
    };
    if (m_state.font->isUnderlined)
        line(shape.underline + shape.underlineThickness / 2.0, shape.underlineThickness);
    if (m_state.font->isStruckOut)
        line(shape.strikeOut, shape.strikeOutThickness);
}

// The next text goes on where this one ended; to the left of it where texts are right-aligned.
void DeviceContext::moveBehind(double width, const RealizedFont &font, const Affine &axes)
{
    const uint32_t align = m_state.textAlign;
    if ((align & kUpdatePosition) == 0 || (align & kCenter) == kCenter)
        return;
    const double down = alignedOffset(align, width, font).y;
    const PointD end = axes.map({ (align & kRight) != 0 ? 0 : width, -down });
    if (const auto toLogical = toPicture().inverse())
        m_state.current = toLogical->map(end);
}

Played DeviceContext::paintLetters(std::vector<PlacedCharacter> characters, const Font &named,
                                   const RealizedFont &font, const Affine &axes, Color color,
                                   Index clip, uint32_t options)
{
    keepShown(characters);
    if (characters.empty())
        return kDone;
    State own = m_state;
    m_state.font = std::make_shared<const Font>(named);
    m_state.textColor = color;
    m_state.textAlign = 0;
    m_state.visible = std::make_shared<Visible>(Visible{ nullptr, false, clip });
    TextCall call;
    call.options = options;
    const Played played = drawLetters(characters, call, font, axes, clip);
    const PlacedCharacter &first = characters.front(), &last = characters.back();
    if (!leavesLines(characters) && first.y == last.y) {
        const double perUnit = font.em / font.shape.tables.unitsPerEm;
        drawLines(call, { first.x, first.y }, last.x - first.x + last.shape.advance * perUnit, font,
                  axes);
    }
    m_state = std::move(own);
    return played;
}

namespace {

    // Characters that share their axes.
    struct Part
    {
        std::span<const PlacedCharacter> characters;
        Affine axes;
    };

} // namespace

// Letters that are turned on their line have each their own axes, and stand where these begin.
static std::vector<Part> partsOf(std::vector<PlacedCharacter> &shown, const RealizedFont &font,
                                 const Affine &axes)
{
    if (font.lean == 0 && !font.isVertical)
        return { { shown, axes } };
    const double c = std::cos(font.lean), s = std::sin(font.lean);
    // Middle of a letter that lies on its side is the middle of the line.
    const double half = font.em / 2, above = (font.ascent - font.descent) / 2;
    const Affine onSide{ 0, -1, 1, 0, half + above, half - above };
    std::vector<Part> parts;
    bool goesOn = false; // the part begun last, whose letters stand on the line
    for (PlacedCharacter &each : shown) {
        const bool isOnSide = font.isVertical && liesOnSide(each.character);
        if (goesOn && !isOnSide) {
            std::span<const PlacedCharacter> &run = parts.back().characters;
            run = { run.data(), run.size() + 1 };
            continue;
        }
        goesOn = false;
        if (isBlank(each.character))
            continue;
        if (font.lean == 0 && !isOnSide) {
            parts.push_back({ { &each, 1 }, axes });
            goesOn = true;
            continue;
        }
        const PointD place = axes.map({ each.x, each.y });
        Affine own = Affine{ c, -s, s, c, 0, 0 }.then(axes);
        own.e = place.x;
        own.f = place.y;
        each.x = each.y = 0;
        parts.push_back({ { &each, 1 }, isOnSide ? onSide.then(own) : own });
    }
    return parts;
}

// That of the state, which mostly is the one of the text before.
const std::optional<RealizedFont> &DeviceContext::realizedFont(bool isAdvanced)
{
    Realized &known = m_realized;
    const bool isKnown =
            known.font == m_state.font || (known.font != nullptr && *known.font == *m_state.font);
    if (!isKnown || known.isAdvanced != isAdvanced || known.toDevice != m_state.toDevice
        || known.world != m_state.world)
        known = { m_state.font, m_state.toDevice, m_state.world, isAdvanced,
                  realizeFont(m_state, m_device, isAdvanced) };
    return known.realized;
}

Played DeviceContext::textOut(const TextCall &call)
{
    if ((call.options & TextOption::kOpaque) != 0 && !isHidden())
        fillTextBox(call, call.box, toPicture(), m_state.backgroundColor);
    const std::optional<RealizedFont> &font = realizedFont(call.isAdvanced);
    if (!font || call.text.empty())
        return kDone;
    TextCall resolved = call;
    std::u16string named;
    Played played = kDone;
    if ((call.options & TextOption::kGlyphs) != 0) {
        named = charactersOfGlyphs(call.text, namedFace(*m_state.font));
        if (named.find(u'\0') != named.npos)
            played = approximated("it names glyphs of a font that is not installed");
        resolved.text = named;
    }
    TextLayout layout = layOut(resolved, m_state, *font);
    const Affine axes = textAxes(call, *font, layout.width);
    moveBehind(layout.width, *font, axes);
    std::vector<PlacedCharacter> &shown = layout.characters;
    keepShown(shown);
    if (std::ranges::any_of(shown, isPrivateCode))
        played = approximated("it has symbols that are no characters of Unicode");
    if (std::ranges::find(shown, U'\uFFFD', &PlacedCharacter::character) != shown.end())
        played = approximated("it has codes that are no characters");
    if (m_isInPath) {
        for (const Part &part : partsOf(shown, *font, axes)) {
            const Played added = addToPath(part.characters, *font, part.axes);
            if (!added.isDone())
                played = added;
        }
        return played;
    }
    if (isHidden())
        return played;
    const RectD box{ 0, -font->ascent, layout.width, font->descent };
    if (m_state.isOpaque)
        fillTextBox(call, box, axes, m_state.backgroundColor);
    if (!shown.empty()) {
        const double reach = font->em / 4; // what letters may stick out of their boxes by
        const RectD ink{ shown.front().x - reach, box.top, shown.back().x + font->em, box.bottom };
        const Index clip = textClip(call, ink, axes);
        for (const auto &[characters, own] : partsOf(shown, *font, axes)) {
            const Played drawn = drawLetters(characters, resolved, *font, own, clip);
            if (!drawn.isDone())
                played = drawn;
        }
    }
    if (!leavesLines(shown))
        drawLines(call, {}, layout.width, *font, axes);
    return played;
}

} // namespace svgtool::picture
