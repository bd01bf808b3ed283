import icon from './icon.svg?inline';
import './ui/style.css';
import { begin } from './app/Begin';

// Within the page, which is one file: Vite leaves icons that index.html names beside it.
document.head.append(Object.assign(document.createElement('link'), { rel: 'icon', href: icon }));

void begin(document.getElementById('app')!);
