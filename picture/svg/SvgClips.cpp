#include "picture/svg/SvgParts.h"

namespace svgtool::picture {

using Defined = SvgDocument::Defined;

void useClip(SvgDocument &document, Index clip)
{
    while (clip != kNone && document.use(Defined::Clip, clip)) {
        const Clip &one = document.scene().clips[clip];
        clip = one.isWhole() ? kNone : one.parent;
    }
}

void writeClipReference(SvgDocument &document, Index clip)
{
    document.put(" clip-path=\"");
    document.reference(Defined::Clip, clip);
    document.put('"');
}

void defineClip(SvgDocument &document, Index number)
{
    const Clip &clip = document.scene().clips[number];
    document.put("<clipPath");
    document.id(Defined::Clip, number);
    if (!clip.isWhole())
        writeClipReference(document, clip.parent);
    document.put("><path d=\"");
    if (clip.path.isEmpty())
        document.put("M0 0");
    writePathData(document, clip.path.verbs(), clip.path.points());
    document.put('"');
    if (clip.isEvenOdd && needsFillRule(clip.path.verbs(), clip.path.points()))
        document.attribute("clip-rule", "evenodd");
    document.put("/></clipPath>\n");
}

} // namespace svgtool::picture
