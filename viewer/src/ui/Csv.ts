// Tables as text for other programs.

/** Result files have six digits, the page keeps single precision: seven digits give back the six. */
export function plainNumber(value: number): string {
    return Number.isFinite(value) ? String(Number(value.toPrecision(7))) : '';
}

/** Tab between the columns for the clipboard, comma for files. Cells with the separator or quotes are quoted. */
export function tableText(rows: readonly (readonly (string | number)[])[], separator: '\t' | ','): string {
    const cell = (value: string | number): string => {
        const text = typeof value === 'number' ? plainNumber(value) : value;
        return text.includes(separator) || text.includes('"') || text.includes('\n')
            ? `"${text.replaceAll('"', '""')}"`
            : text;
    };
    return rows.map((row) => row.map(cell).join(separator)).join('\n') + '\n';
}
