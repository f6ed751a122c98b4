#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <cstddef>

/**
 * Decides whether a frame has to be drawn or would look as the one before.
 *
 * Still is what has been proven still: a frame is left out only after many were
 * drawn without anything that could change the picture, and never for longer
 * than three seconds, whatever the proof missed. Plain logic, any thread.
 */
class AXEARTHVIEWER_EXPORT AxStillRule
{
public:
    /// What is known of a frame before it is drawn.
    struct Facts
    {
        std::size_t fingerprint = 0; ///< of all that can be seen to make the picture
        bool mayChange = false;      ///< something in it tells nobody when it changes
        bool isLoading = false;      ///< data is under way
        bool isAsked = false;        ///< somebody asked for a frame
        double seconds = 0.0;        ///< on a clock that runs on
    };

    /// So many frames are drawn after the last change. Heights under labels and
    /// draped shapes are looked up a few a frame, each again after 150 frames.
    static constexpr int settlingFrames = 200;
    /// No picture is shown for longer than this, seconds.
    static constexpr double oldest = 3.0;

    bool MustDraw(const Facts& now) const;
    /// Whether the picture may differ from the one that was drawn last.
    bool IsChange(const Facts& now) const;
    /// A frame was drawn from these facts.
    void Drawn(const Facts& facts);
    /// While off, every frame is drawn.
    void SetSaving(bool on) { isSaving = on; }
    bool IsSaving() const { return isSaving; }

private:
    Facts drawn;
    int settled = 0; // frames drawn since the last change
    bool isSaving = true;
};
