import { DEFAULT_STATE } from './state/ViewState';
import { Store } from './state/Store';

const store = new Store(DEFAULT_STATE);
document.title = `tarnvexo ${store.state.field}`;
