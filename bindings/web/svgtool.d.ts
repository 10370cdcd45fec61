/** Draws Windows metafiles (EMF, EMF+ and WMF) as SVG, in browsers and in node. */

/** What became of a metafile; the worst that is true of it. */
export type Verdict = "complete" | "approximated" | "lost" | "damaged";

export interface Options {
    /** Of the document in CSS pixels; with one of width and height the other follows. */
    width?: number;
    height?: number;
    /** Of the natural size, where neither is given; 1 by default. */
    scale?: number;
    /** What letters become; outlines need fonts, which a browser does not give: they stay text. */
    text?: "characters" | "outlines";
    /** Of a metafile with several pictures, which one; the best by default. */
    source?: "best" | "wmf" | "emf";
    /** What ids begin with: a letter, and up to 63 letters, digits, "-" and "_". */
    idPrefix?: string;
}

/** docs/report.schema.json tells all of it. */
export interface Report {
    verdict: Verdict;
    totals: { drawing: number; drawingLost: number; stateIgnored: number; approximated: number };
    records: {
        name: string; type: number; weight: "drawing" | "state" | "hint";
        outcome: "drawn" | "approximated" | "skipped" | "neutral";
        count: number; firstOffset: number; reason?: string;
    }[];
    end: { reason: string; record: number; offset: number };
    [more: string]: unknown;
}

export declare class Picture {
    /** The document: SVG 1.1. */
    readonly svg: string;
    /** Of the document in CSS pixels. */
    readonly width: number;
    readonly height: number;
    readonly verdict: Verdict;
    readonly report: Report;
    /** A line for each type of records that are not drawn as GDI would, and for damage. */
    readonly warnings: string[];
}

/** There is no picture: the message says why. */
export declare class SvgtoolError extends Error {
    /** As svgtool_error of the C interface: 1 is no metafile, 5 is no memory. */
    readonly code: number;
}

export declare class Converter {
    constructor(module: WebAssembly.Module);
    /** Of the library that draws. */
    readonly version: string;
    /**
     * Draws a metafile, also one that gzip has packed. A damaged one is no error: its picture shows
     * what can be read of it. Throws SvgtoolError, and TypeError for options that are none.
     */
    convert(metafile: ArrayBuffer | ArrayBufferView, options?: Options): Picture;
}

/** Loads the module: by default the file svgtool.wasm beside this one. */
export declare function load(source?: URL | string | BufferSource | WebAssembly.Module):
    Promise<Converter>;
