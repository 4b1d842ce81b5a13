#pragma once

namespace till {

class Sale;

/// A till that was killed while it wrote an offer or a delivery note, or before it took the lines away,
/// leaves open lines that stand on that paper already. They are known by this: the latest paper of this till
/// has the same lines, and those of the sale are older than it, while a paper that became whole leaves none.
/// Tells it as a doubt; the lines go when the cashier wants it. True when something was shown. Raises what
/// the store raises.
[[nodiscard]] bool TellPaperInDoubt(Sale& sale);

} // namespace till
