#pragma once

// Where the description lines of the feature guide sit: two lines side by
// side, each a code row above a text row, at most 10 lines (10 rows) a page.
class FeatureGridLayout
{
public:
    static constexpr int LinesPerPage = 10;
    // Entries per page in a list of code, text pairs.
    static constexpr int EntriesPerPage = 2 * LinesPerPage;

    // Rows for `lines` lines: min(N, 10) for even N, min(N, 9) + 1 for odd N.
    static int rowCount(int lines);
    // Grid row of the code cell and column of the page's `line`-th line.
    static int codeRow(int line) { return (line / 2) * 2; }
    static int column(int line) { return line % 2; }
    // The page's line shown at (row, column); -1 for a code row.
    static int lineAt(int row, int column);
    // Pages of a list of `entries` code, text entries.
    static int pageCount(int entries);
};
