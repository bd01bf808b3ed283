import { expect, test } from 'vitest';
import { packetAddress, sortFiles } from '../../../src/app/Sources';

const emptyPage = { getElementById: () => null } as unknown as Document;
const at = (href: string): Location => new URL(href) as unknown as Location;

test('files that are opened together are told apart by their names', () => {
    const contour = new File([], 'Tarn+Vexo_AverageStrs.txt');
    const own = new File([], 'Shell element node stress.txt');
    const other = new File([], 'Node_Dis.txt');
    expect(sortFiles([other, own, contour])).toMatchObject({ contour, own });
    expect(sortFiles([own]).contour).toBeUndefined();
});

test('a packet is fetched only from where the page comes from', () => {
    expect(packetAddress(emptyPage, at('http://127.0.0.1:5/w/?source=packet'))?.href).toBe(
        'http://127.0.0.1:5/w/packet',
    );
    expect(packetAddress(emptyPage, at('http://127.0.0.1:5/w/?source=http://other.example/p'))).toBeUndefined();
    expect(packetAddress(emptyPage, at('file:///page.html?source=packet'))).toBeUndefined();
});
