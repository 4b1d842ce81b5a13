#pragma once

#include "Parser.h"

namespace jet {

/// Counts a level of nesting while it lives.
class Parser::Nesting {
  public:
    explicit Nesting(Parser& parser)
        : m_parser(parser) {
        if (m_parser.m_depth >= maxDepth) raiseTooComplex(parser.peek().pos);
        ++m_parser.m_depth;
    }
    ~Nesting() { --m_parser.m_depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    Parser& m_parser;
};

} // namespace jet
