#pragma once

#include <text/RuntimeError.h>

/// An error whose cause was told by a library or the system, in their words and mostly in English. People
/// read the description; the details go into the log and behind "Einzelheiten".
class DetailedError : public RuntimeError {
  public:
    DetailedError(int Number_, QString Description_, QString Details_, QString Source_ = {})
        : RuntimeError(Number_, std::move(Description_), std::move(Source_))
        , Details(std::move(Details_)) {}

    QString Details;
};

/// "" for an error that has none.
[[nodiscard]] inline QString DetailsOf(const std::exception& error) {
    const auto* detailed = dynamic_cast<const DetailedError*>(&error);
    return detailed != nullptr ? detailed->Details : QString();
}
