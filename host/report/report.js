// Makes the tables sortable: every heading becomes a button. The first press sorts upwards, the second
// downwards, the third restores the order of the page. Cells without a value stay last.
"use strict";

for (const table of document.querySelectorAll("table.sortable")) {
    const body = table.tBodies[0];
    const original = Array.from(body.rows);
    const headings = Array.from(table.tHead.rows[0].cells);

    const compareCells = (column, isNumber, sign) => (rowA, rowB) => {
        const [a, b] = [rowA, rowB].map((row) => row.cells[column].textContent);
        if (a === "-" || b === "-") return (a === "-") - (b === "-");
        return sign * (isNumber ? Number(a) - Number(b) : a.localeCompare(b, "en", { numeric: true }));
    };

    const sortBy = (column) => {
        const heading = headings[column];
        const next = { none: "ascending", ascending: "descending", descending: "none" };
        const direction = next[heading.ariaSort ?? "none"];
        for (const other of headings) other.ariaSort = "none";
        heading.ariaSort = direction;
        const rows = Array.from(original);
        const sign = direction === "ascending" ? 1 : -1;
        if (direction !== "none") rows.sort(compareCells(column, heading.className === "number", sign));
        body.append(...rows);
    };

    headings.forEach((heading, column) => {
        const button = document.createElement("button");
        button.type = "button";
        button.append(...heading.childNodes);
        button.addEventListener("click", () => sortBy(column));
        heading.append(button);
        heading.ariaSort = "none";
    });
}
