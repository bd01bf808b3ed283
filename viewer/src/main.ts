import './ui/style.css';
import { begin } from './app/Begin';

void begin(document.getElementById('app')!);
