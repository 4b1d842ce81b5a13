#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

/// The audible signal of an unknown article: without a sound card (gIsSoundCardAktiv False) the tones that a
/// PC speaker would give, 200 Hz for 300 ms, 500 Hz for 500 ms, 200 Hz for 300 ms; with one the system's
/// warning sound seven times, 150 ms apart. Returns at once; without any device for sound it falls back to
/// the system's beep.
void SoundUnknownArticle();

/// Replaces what is heard, e.g. to count signals; an empty function brings the sound back.
void SetSoundHook(std::function<void()> hook);

struct Tone {
    int hertz = 0, milliseconds = 0;
};
inline constexpr int toneSampleRate = 44100;
/// The tones as 16-bit mono samples, faded at their ends so that they don't crack.
[[nodiscard]] QByteArray ToneSamples(const std::vector<Tone>& tones);
